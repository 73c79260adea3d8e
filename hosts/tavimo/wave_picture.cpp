#include "wave_picture.h"

#include <algorithm>
#include <array>

#include "picture_parts.h"
#include "small_digits.h"
#include "tavimo_host.h"
#include "wave_header.h"

namespace tavimo::host {

namespace {

constexpr int kNumbersHeight = 14;

Scale ScaleFor(const PictureRequest& request) {
  Scale scale;
  scale.columnsPerStep = request.style == WaveStyle::Half ? 1 : 2;
  scale.firstLevel = request.fromMs / kLevelMs;
  const std::int64_t endMs = std::min(request.toMs, request.recordingMs);
  // One level more where the recording ends in the picture: the half wave marks the end there.
  const int endMark = request.toMs < request.recordingMs ? 0 : 1;
  const std::int64_t levels = (endMs + kLevelMs - 1) / kLevelMs - scale.firstLevel + endMark;
  const std::int64_t mostSteps = request.width / scale.columnsPerStep;
  scale.levelsPerStep = (levels + mostSteps - 1) / mostSteps;
  scale.columns = static_cast<int>((levels + scale.levelsPerStep - 1) / scale.levelsPerStep) * scale.columnsPerStep;
  scale.pixelsPerColumn = std::max(request.width / scale.columns, 1);
  return scale;
}

Picture DrawWave(const PictureRequest& request, const Scale& scale, int height) {
  Picture wave = MakePicture(scale.columns, height);
  tvSelectPen(wave.get(), kWave);
  const auto startMs = static_cast<std::int32_t>(scale.firstLevel * kLevelMs);
  const auto levels = static_cast<std::int32_t>(scale.levelsPerStep);
  if (request.style == WaveStyle::Half) {
    vcDrawHalfDigestWave(wave.get(), height, scale.columns, startMs, levels);
  } else {
    const int fromBottom = request.style == WaveStyle::Bars ? 1 : 0;
    vcDrawSrcDigestWave(wave.get(), height, scale.columns, startMs, levels, fromBottom);
  }
  return wave;
}

// The sentences that reach into the picture, by number from 1, and how many of them are marked: each one, or where they
// stand too close for that every fifth, tenth and so on.
struct Marks {
  std::size_t first = 1;
  std::size_t last = 0;
  std::size_t step = 1;
};

Marks MarksFor(const PictureRequest& request, const Scale& scale) {
  constexpr int kLeastGap = 8;         // of sentences that are all marked
  constexpr int kLeastNumberGap = 30;  // of numbers
  const auto& starts = request.startsMs;
  Marks marks;
  const auto reachesIn = std::upper_bound(starts.begin(), starts.end(), scale.TimeAt(0));
  marks.first = std::max<std::size_t>(static_cast<std::size_t>(reachesIn - starts.begin()), 1);
  marks.last = static_cast<std::size_t>(std::lower_bound(starts.begin(), starts.end(), scale.TimeAt(scale.Width())) -
                                        starts.begin());
  if (marks.last < marks.first) return marks;
  const double gap = static_cast<double>(scale.Width()) / static_cast<double>(marks.last - marks.first + 1);
  if (gap >= kLeastGap) return marks;
  static constexpr auto kSteps = std::to_array<std::size_t>({5, 10, 20, 50, 100, 200, 500, 1000, 10'000, 100'000});
  const auto isWide = [gap](std::size_t step) { return static_cast<double>(step) * gap >= kLeastNumberGap; };
  marks.step = *std::find_if(kSteps.begin(), kSteps.end() - 1, isWide);
  return marks;
}

// Every second sentence on a tinted ground. REQUIRES: marks.step is 1.
void DrawBands(VcDc picture, const PictureRequest& request, const Scale& scale, const Marks& marks, int bottom) {
  for (std::size_t number = marks.first; number <= marks.last; ++number) {
    if (number % 2 == 0) continue;
    const std::int64_t endMs = number < request.startsMs.size() ? request.startsMs[number] : request.recordingMs;
    const int left = std::max(scale.PixelAt(request.startsMs[number - 1]), 0);
    const int right = std::min(scale.PixelAt(endMs), scale.Width());
    tvFill(picture, left, kNumbersHeight, right - left, bottom - kNumbersHeight, kBand);
  }
}

// A number stands behind its mark where it has room before the next one.
void DrawMarks(VcDc picture, const PictureRequest& request, const Scale& scale, const Marks& marks, int bottom) {
  const std::size_t first = (marks.first + marks.step - 1) / marks.step * marks.step;
  for (std::size_t number = first; number <= marks.last; number += marks.step) {
    const int x = scale.PixelAt(request.startsMs[number - 1]);
    if (x >= 0) tvFill(picture, x, 0, 1, bottom, kTick);
    const std::size_t next = number + marks.step;
    const int end = next <= marks.last ? scale.PixelAt(request.startsMs[next - 1]) : scale.Width();
    const std::string text = std::to_string(number);
    const int left = std::max(x, 0) + 3;
    if (left + DigitsWidth(text) < end) DrawDigits(picture, left, 4, text, kText);
  }
}

}  // namespace

PictureSize SaveWavePicture(const PictureRequest& request, const std::filesystem::path& file) {
  const Scale scale = ScaleFor(request);
  const int waveHeight = request.height - kNumbersHeight - kTimesHeight;
  const int waveBottom = kNumbersHeight + waveHeight;
  const Picture wave = DrawWave(request, scale, waveHeight);
  const Picture picture = MakePicture(scale.Width(), request.height);
  const Marks marks = MarksFor(request, scale);
  if (marks.step == 1) DrawBands(picture.get(), request, scale, marks, waveBottom);
  PlaceWave(picture.get(), wave.get(), scale, kNumbersHeight, waveHeight);
  DrawMarks(picture.get(), request, scale, marks, waveBottom);
  DrawTimes(picture.get(), scale, waveBottom);
  SavePicture(picture.get(), file);
  return {scale.Width(), request.height};
}

}  // namespace tavimo::host
