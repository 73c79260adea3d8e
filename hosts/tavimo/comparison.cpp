#include "comparison.h"

#include <algorithm>
#include <fstream>
#include <span>

#include "lesson_lock.h"
#include "moment.h"
#include "peak_digest.h"
#include "picture_parts.h"
#include "refusal.h"
#include "small_digits.h"
#include "system.h"
#include "tape.h"
#include "tavimo_host.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kTakeDigest = "tmpwav/tmpmic.tmp";  // the engine's own name for it
constexpr int kWidth = 1200;
constexpr int kLabelHeight = 16;
constexpr int kWaveHeight = 121;  // an odd one has a middle line
constexpr int kRowHeight = kLabelHeight + kWaveHeight;
constexpr int kColumnsPerPair = 2;  // of levels, as the engine draws full waves

std::int64_t LevelsFor(std::int64_t lengthMs) { return (lengthMs + kLevelMs - 1) / kLevelMs; }

SpokenPart Measure(std::span<const std::uint8_t> levels, std::int64_t lengthMs, int threshold) {
  const auto isSpeech = [threshold](std::uint8_t level) { return level > threshold; };
  const auto speech = std::count_if(levels.begin(), levels.end(), isSpeech) * kLevelMs;
  return {lengthMs, std::min<std::int64_t>(speech, lengthMs), threshold};
}

std::span<const std::uint8_t> LevelsOf(const Stretch& stretch, const std::vector<std::uint8_t>& levels) {
  const auto count = static_cast<std::int64_t>(levels.size());
  const std::int64_t first = std::min(stretch.startMs / kLevelMs, count);
  const std::int64_t last = std::min(LevelsFor(stretch.endMs), count);
  return std::span(levels).subspan(static_cast<std::size_t>(first), static_cast<std::size_t>(last - first));
}

std::vector<std::uint8_t> MakeTakeDigest(const Take& take, const WaveHeader& header) {
  ProgressBar progress(Readable(take.file.filename()));
  std::vector<std::uint8_t> levels = PeakLevels(take.file, header, progress);
  std::ofstream file(kTakeDigest, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(levels.data()), static_cast<std::streamsize>(levels.size()));
  file.close();
  if (!file) throw Refusal("the take's digest could not be written in " + Readable(fs::current_path() / "tmpwav"));
  return levels;
}

Scale ScaleFor(std::int64_t longestMs) {
  Scale scale;
  scale.columnsPerStep = kColumnsPerPair;
  const std::int64_t levels = std::max<std::int64_t>(LevelsFor(longestMs), 1);
  constexpr std::int64_t kMostSteps = kWidth / kColumnsPerPair;
  scale.levelsPerStep = (levels + kMostSteps - 1) / kMostSteps;
  scale.columns = static_cast<int>((levels + scale.levelsPerStep - 1) / scale.levelsPerStep) * kColumnsPerPair;
  scale.pixelsPerColumn = std::max(kWidth / scale.columns, 1);
  return scale;
}

// One of the two waves with its label; drawn no further than it reaches, and a mark where it ends.
template <typename DrawWave>
void DrawRow(VcDc picture, const Scale& scale, int top, const std::string& label, std::int64_t lengthMs,
             DrawWave drawWave) {
  Scale own = scale;
  const std::int64_t steps = (LevelsFor(lengthMs) + scale.levelsPerStep - 1) / scale.levelsPerStep;
  own.columns = std::max(static_cast<int>(steps) * kColumnsPerPair, 1);
  const Picture wave = MakePicture(own.columns, kWaveHeight);
  tvSelectPen(wave.get(), kWave);
  drawWave(wave.get(), own.columns, static_cast<std::int32_t>(scale.levelsPerStep));
  tvFill(picture, 0, top, scale.PixelAt(lengthMs), kRowHeight, kBand);
  DrawDigits(picture, 4, top + 5, label, kText);
  PlaceWave(picture, wave.get(), own, top + kLabelHeight, kWaveHeight);
  tvFill(picture, std::min(scale.PixelAt(lengthMs), scale.Width() - 1), top, 1, kRowHeight, kTick);
}

void SaveComparisonPicture(const Comparison& comparison, const fs::path& file) {
  const std::int64_t sentenceMs = comparison.sentencePart.lengthMs;
  const std::int64_t takeMs = comparison.takePart.lengthMs;
  const Scale scale = ScaleFor(std::max(sentenceMs, takeMs));
  const Picture picture = MakePicture(scale.Width(), 2 * kRowHeight + kTimesHeight);
  const auto startMs = static_cast<std::int32_t>(comparison.stretch.startMs);
  DrawRow(picture.get(), scale, 0, "sentence " + std::to_string(comparison.sentence) + "  " + FormatTime(sentenceMs),
          sentenceMs, [startMs](VcDc dc, std::int32_t columns, std::int32_t levelsPerPair) {
            vcDrawSrcDigestWave(dc, kWaveHeight, columns, startMs, levelsPerPair, 0);
          });
  DrawRow(picture.get(), scale, kRowHeight, "take " + MomentOf(comparison.take.file) + "  " + FormatTime(takeMs),
          takeMs, [](VcDc dc, std::int32_t columns, std::int32_t levelsPerPair) {
            vcDrawManVoiceDigestWave(dc, kWaveHeight, columns, 0, levelsPerPair, 0);
          });
  DrawTimes(picture.get(), scale, 2 * kRowHeight);
  SavePicture(picture.get(), file);
}

std::string DescribePart(const SpokenPart& part) {
  return FormatTime(part.lengthMs) + " long, " + FormatTime(part.speechMs) + " of it speech";
}

}  // namespace

int SpeechThreshold(std::vector<std::uint8_t> levels) {
  if (levels.empty()) return 0;
  std::sort(levels.begin(), levels.end());
  const int quiet = levels[levels.size() / 10];
  const int loud = levels[levels.size() * 19 / 20];
  return quiet + std::max((loud - quiet) / 10, 1);
}

Comparison SaveComparison(LessonSession& session, const std::vector<std::uint8_t>& levels, int sentence,
                          const Take& take, const fs::path& picture) {
  // The take's digest lies beside the tape, and has one name for all.
  const LessonLock lock(kTapeLockFile, kRecordingElsewhere);
  Comparison comparison{sentence, StretchOf(session, sentence), take, {}, {}};
  const WaveHeader header = ReadWaveHeader(take.file);
  if (!header.problem.empty()) throw Refusal("its take cannot be compared: " + header.problem);
  const Stretch& stretch = comparison.stretch;
  comparison.sentencePart =
      Measure(LevelsOf(stretch, levels), stretch.endMs - stretch.startMs, SpeechThreshold(levels));
  const std::vector<std::uint8_t> takeLevels = MakeTakeDigest(take, header);
  comparison.takePart = Measure(takeLevels, header.DurationMs(), SpeechThreshold(takeLevels));
  SaveComparisonPicture(comparison, picture);
  return comparison;
}

std::string Describe(const Comparison& comparison) {
  return "sentence " + std::to_string(comparison.sentence) + ": " + DescribePart(comparison.sentencePart) + "\ntake " +
         std::to_string(comparison.take.number) + " of " + MomentOf(comparison.take.file) + ": " +
         DescribePart(comparison.takePart) + '\n';
}

}  // namespace tavimo::host
