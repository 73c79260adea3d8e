// A picture of a recording: the engine draws the wave, the host puts it into a frame with the sentences as bands and
// numbers and the time below.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace tavimo::host {

enum class WaveStyle {
  Half,  // standing on a line; a red line marks the end of the recording
  Full,  // centred on a line
  Bars,  // standing, twice as fine
};

inline constexpr int kLeastPictureWidth = 64;
inline constexpr int kMostPictureWidth = 2048;  // the engine draws a full wave no wider
inline constexpr int kLeastPictureHeight = 80;
inline constexpr int kMostPictureHeight = 2000;

struct PictureRequest {
  WaveStyle style = WaveStyle::Half;
  std::int64_t fromMs = 0;
  std::int64_t toMs = 0;         // held to the recording's end
  std::int64_t recordingMs = 0;  // what the open digest covers
  int width = 1200;              // at most; the picture is a whole number of pixels for every 40 ms, or the reverse
  int height = 240;
  std::vector<std::uint32_t> startsMs;
};

struct PictureSize {
  int width = 0;
  int height = 0;
};

// Draws the digest that is open in the engine and saves it as a PNG file, whole or not at all; a Refusal when it cannot
// be saved. REQUIRES: fromMs < toMs, fromMs < recordingMs, and a width and height within the bounds.
PictureSize SaveWavePicture(const PictureRequest& request, const std::filesystem::path& file);

}  // namespace tavimo::host
