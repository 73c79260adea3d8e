// What the pictures of waves have in common: the colours, the scale of time, the axis, and how what the engine drew gets
// into a frame.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <type_traits>

#include "tavimo_host.h"
#include "wave_header.h"

namespace tavimo::host {

// 0x00BBGGRR
inline constexpr std::uint32_t kPaper = 0xFFFFFF;
inline constexpr std::uint32_t kBand = 0xFAF1E6;
inline constexpr std::uint32_t kWave = 0x9A5A1C;
inline constexpr std::uint32_t kTick = 0x2A7FE0;
inline constexpr std::uint32_t kAxis = 0x909090;
inline constexpr std::uint32_t kText = 0x303030;

inline constexpr int kTimesHeight = 18;  // of the axis

// How time and columns go together in one picture.
struct Scale {
  std::int64_t firstLevel = 0;
  std::int64_t levelsPerStep = 1;  // a step is one column of the half wave, a pair of columns of the others
  int columns = 1;                 // as the engine draws them
  int pixelsPerColumn = 1;
  int columnsPerStep = 1;

  [[nodiscard]] int PixelAt(std::int64_t timeMs) const {
    const std::int64_t sinceFirst = timeMs - firstLevel * kLevelMs;
    return static_cast<int>(sinceFirst * columnsPerStep * pixelsPerColumn / (levelsPerStep * kLevelMs));
  }
  [[nodiscard]] std::int64_t TimeAt(int pixel) const {
    return firstLevel * kLevelMs + pixel * levelsPerStep * kLevelMs / (std::int64_t{columnsPerStep} * pixelsPerColumn);
  }
  [[nodiscard]] int Width() const { return columns * pixelsPerColumn; }
};

struct DcCloser {
  void operator()(VcDc dc) const { tvDestroyDc(dc); }
};
using Picture = std::unique_ptr<std::remove_pointer_t<VcDc>, DcCloser>;

// A Refusal when there is no memory for it.
[[nodiscard]] Picture MakePicture(int width, int height);

// Lays what the engine drew, height pixels high, over what is there from top on, each of its columns as wide as the scale
// says.
void PlaceWave(VcDc picture, VcDc wave, const Scale& scale, int top, int height);

// The axis of time below top.
void DrawTimes(VcDc picture, const Scale& scale, int top);

// Saves a picture, whole or not at all; a Refusal when it cannot be saved.
void SavePicture(VcDc picture, const std::filesystem::path& file);

}  // namespace tavimo::host
