#include "sentence_finder.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "refusal.h"
#include "system.h"
#include "tavimo.h"
#include "text.h"
#include "wave_header.h"

namespace tavimo::host {

namespace {

using Levels = std::vector<std::uint8_t>;

// Where a threshold may lie between the noise floor and loud speech. Low, so that soft beginnings are not lost.
constexpr std::array kThresholdShares = {0.02, 0.04, 0.07, 0.11, 0.16, 0.22};
constexpr std::array kSilencesMs = {160, 200, 240, 280, 320,  360,  400,  440,  480,  520,
                                    600, 680, 760, 880, 1040, 1240, 1480, 1760, 2080, 2480};
constexpr double kUsualSilenceMs = 460;  // what a reader leaves between two sentences, more often than not

constexpr double kSliverMs = 400;
constexpr double kShortestUsualMs = 1100;  // a second and a half with the silence behind it
constexpr double kLongestUsualMs = 8000;
constexpr double kGiantMs = 20000;

int Percentile(const Levels& levels, double share) {
  Levels sorted = levels;
  const auto place = sorted.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(sorted.size() - 1));
  std::nth_element(sorted.begin(), place, sorted.end());
  return *place;
}

std::vector<int> Thresholds(const Levels& levels) {
  const int floor = Percentile(levels, 0.10);
  const int speech = Percentile(levels, 0.90);
  std::vector<int> thresholds;
  for (const double share : kThresholdShares) {
    const int threshold = floor + std::max(1, static_cast<int>(std::lround(share * (speech - floor))));
    if (thresholds.empty() || threshold > thresholds.back()) thresholds.push_back(threshold);
  }
  return thresholds;
}

// The engine's rule for a first start, for recordings of fewer than two sentences, which it does not write down.
std::vector<std::uint32_t> OnlyStart(const Levels& levels, int threshold) {
  const auto sound = std::find_if(levels.begin(), levels.end(), [threshold](int level) { return level > threshold; });
  if (sound == levels.end()) return {};
  return {static_cast<std::uint32_t>(std::max<std::ptrdiff_t>(sound - levels.begin() - 2, 0) * kLevelMs)};
}

Cut CutWith(const Levels& levels, int threshold, int silenceMs) {
  vcSetSilentParam(threshold, silenceMs);
  const std::int32_t count = vcMakeSentence();
  Cut cut{threshold, silenceMs / kLevelMs * kLevelMs, {}};
  cut.startsMs.resize(static_cast<std::size_t>(std::max(count, 0)));
  if (count < 0 || (count > 0 && vcReadTmpIdx(cut.startsMs.data(), count) != 0)) {
    throw Refusal("its sentences could not be written in " + Readable(std::filesystem::current_path()));
  }
  if (count == 0) cut.startsMs = OnlyStart(levels, threshold);
  return cut;
}

// How much of each sentence is speech: without the silence at its end.
std::vector<double> SpokenMs(const Levels& levels, const Cut& cut) {
  std::vector<double> spoken;
  for (std::size_t i = 0; i < cut.startsMs.size(); ++i) {
    const std::size_t start = cut.startsMs[i] / kLevelMs;
    std::size_t end = i + 1 < cut.startsMs.size() ? cut.startsMs[i + 1] / kLevelMs : levels.size();
    while (end > start && levels[end - 1] <= cut.threshold) --end;
    spoken.push_back(static_cast<double>(end - start) * kLevelMs);
  }
  return spoken;
}

// 1 for a sentence of usual length, falling to 0 for slivers and giants.
double UsualShare(double spokenMs) {
  if (spokenMs < kShortestUsualMs) return std::max(0.0, spokenMs / kShortestUsualMs);
  if (spokenMs <= kLongestUsualMs) return 1;
  return std::max(0.0, (kGiantMs - spokenMs) / (kGiantMs - kLongestUsualMs));
}

double LengthScore(const Levels& levels, const Cut& cut) {
  double score = 0;
  for (const double spoken : SpokenMs(levels, cut)) score += UsualShare(spoken) - (spoken < kSliverMs ? 1 : 0);
  return score / static_cast<double>(cut.startsMs.size());
}

double Similarity(std::size_t left, std::size_t right) {
  return static_cast<double>(std::min(left, right)) / static_cast<double>(std::max({left, right, std::size_t{1}}));
}

// Every pair of parameters, cut: a row for each threshold, a column for each silence length.
class Sweep {
 public:
  Sweep(const Levels& levels, const std::vector<int>& thresholds, const std::vector<int>& silencesMs)
      : levels_(levels) {
    for (const int threshold : thresholds) {
      StopIfInterrupted();
      auto& row = rows_.emplace_back();
      for (const int silenceMs : silencesMs) row.push_back(CutWith(levels, threshold, silenceMs));
    }
  }

  // Of equals the one with the lower threshold.
  [[nodiscard]] const Cut& Best() const {
    const Cut* best = &rows_[0][0];
    double bestScore = -1;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
      for (std::size_t column = 0; column < rows_[row].size(); ++column) {
        const double score = Score(row, column);
        if (score > bestScore) {
          bestScore = score;
          best = &rows_[row][column];
        }
      }
    }
    return *best;
  }

 private:
  // What speaks for a cut: sentences of usual length; a count that stays the same when a parameter is moved a little,
  // because then the silences really fall into two kinds; and a silence as readers make them.
  [[nodiscard]] double Score(std::size_t row, std::size_t column) const {
    const Cut& cut = rows_[row][column];
    if (cut.startsMs.size() < 2) return -1;
    const double octaves = std::log2(cut.silenceMs / kUsualSilenceMs);
    return LengthScore(levels_, cut) + 0.5 * SteadinessByThreshold(row, column) +
           0.4 * std::min(SteadyOctaves(row, column), 1.0) + 0.5 * std::exp(-octaves * octaves / 0.72);
  }

  [[nodiscard]] std::size_t Count(std::size_t row, std::size_t column) const {
    return rows_[row][column].startsMs.size();
  }

  [[nodiscard]] double SteadinessByThreshold(std::size_t row, std::size_t column) const {
    const std::size_t count = Count(row, column);
    const double below = row > 0 ? Similarity(count, Count(row - 1, column)) : 1;
    const double above = row + 1 < rows_.size() ? Similarity(count, Count(row + 1, column)) : 1;
    return (below + above) / 2;
  }

  // Over how many doublings of the silence length the count stays nearly the same.
  [[nodiscard]] double SteadyOctaves(std::size_t row, std::size_t column) const {
    const auto& cuts = rows_[row];
    const auto count = static_cast<double>(Count(row, column));
    const auto isAlike = [&](std::size_t other) {
      return std::abs(static_cast<double>(Count(row, other)) - count) <= std::max(1.0, 0.05 * count);
    };
    std::size_t first = column;
    std::size_t last = column;
    while (first > 0 && isAlike(first - 1)) --first;
    while (last + 1 < cuts.size() && isAlike(last + 1)) ++last;
    return std::log2(static_cast<double>(cuts[last].silenceMs) / cuts[first].silenceMs);
  }

  const Levels& levels_;
  std::vector<std::vector<Cut>> rows_;
};

}  // namespace

Cut FindSentences(const Levels& levels, std::optional<int> threshold, std::optional<int> silenceMs) {
  if (threshold && silenceMs) return CutWith(levels, *threshold, *silenceMs);
  const std::vector<int> thresholds = threshold ? std::vector{*threshold} : Thresholds(levels);
  const std::vector<int> silences =
      silenceMs ? std::vector{*silenceMs} : std::vector(kSilencesMs.begin(), kSilencesMs.end());
  return Sweep(levels, thresholds, silences).Best();
}

}  // namespace tavimo::host
