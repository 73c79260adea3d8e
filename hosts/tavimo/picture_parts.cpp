#include "picture_parts.h"

#include <algorithm>
#include <array>
#include <fstream>

#include "refusal.h"
#include "small_digits.h"
#include "text.h"

namespace tavimo::host {

namespace {

constexpr int kTimesGap = 70;  // pixels from one time to the next, at least

// "1:05", and "1:05.5" where the times stand closer than a second.
std::string ShortTime(std::int64_t timeMs, std::int64_t stepMs) {
  const std::string full = FormatTime(timeMs);
  return full.substr(0, full.size() - (stepMs % 1000 == 0 ? 4 : 2));
}

// Whatever else bears the name, a lesson or a take, is not to be had again.
bool MayBecomePicture(const std::filesystem::path& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error) || std::filesystem::file_size(file, error) == 0) return true;
  std::array<char, 4> start{};
  std::ifstream(file, std::ios::binary).read(start.data(), start.size());
  return start == std::array{'\x89', 'P', 'N', 'G'};
}

}  // namespace

Picture MakePicture(int width, int height) {
  Picture picture(tvCreateDc(width, height));
  if (!picture) throw Refusal("there is no memory for its picture");
  return picture;
}

void PlaceWave(VcDc picture, VcDc wave, const Scale& scale, int top, int height) {
  for (int column = 0; column < scale.columns; ++column) {
    for (int y = 0; y < height;) {
      const std::uint32_t colour = tvPixel(wave, column, y);
      const int first = y;
      while (y < height && tvPixel(wave, column, y) == colour) ++y;
      if (colour == kPaper) continue;
      tvFill(picture, column * scale.pixelsPerColumn, top + first, scale.pixelsPerColumn, y - first, colour);
    }
  }
}

void DrawTimes(VcDc picture, const Scale& scale, int top) {
  static constexpr auto kStepsMs =
      std::to_array<std::int64_t>({100, 200, 500, 1000, 2000, 5000, 10'000, 15'000, 30'000, 60'000, 120'000, 300'000,
                                   600'000, 1'800'000, 3'600'000});
  const std::int64_t gapMs = scale.TimeAt(kTimesGap) - scale.TimeAt(0);
  const auto step = std::lower_bound(kStepsMs.begin(), kStepsMs.end() - 1, gapMs);
  tvFill(picture, 0, top, scale.Width(), 1, kAxis);
  std::int64_t timeMs = (scale.TimeAt(0) + *step - 1) / *step * *step;
  for (int x = scale.PixelAt(timeMs); x < scale.Width(); timeMs += *step, x = scale.PixelAt(timeMs)) {
    tvFill(picture, x, top, 1, 4, kAxis);
    const std::string text = ShortTime(timeMs, *step);
    const int left = std::max(x - DigitsWidth(text) / 2, 1);
    if (left + DigitsWidth(text) < scale.Width()) DrawDigits(picture, left, top + 7, text, kText);
  }
}

void SavePicture(VcDc picture, const std::filesystem::path& file) {
  if (!MayBecomePicture(file)) {
    throw Refusal(Readable(file) + " is there already and is no picture; name another file for it");
  }
  if (tvSavePng(picture, Utf8(file).c_str()) != 0) {
    throw Refusal("its picture could not be saved as " + Readable(file) + "; -o names another place");
  }
}

}  // namespace tavimo::host
