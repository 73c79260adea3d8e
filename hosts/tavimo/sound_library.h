// What the decoding and the resampling library do for this program. Where it is built without them, as for Windows, other
// kinds of sound are refused with a way out. A resampler of our own would be a second one whose faults only ears find.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <span>

#include "recording_writer.h"
#include "sound_source.h"

namespace tavimo::host {

// A Refusal when it is no sound that can be decoded.
[[nodiscard]] std::unique_ptr<SoundSource> OpenWithLibrary(const std::filesystem::path& file);

// Writes all of the source as MP3, with the frames done so far for every piece. False where that cannot be.
bool WriteMp3(SoundSource& source, const std::filesystem::path& file,
              const std::function<void(std::int64_t)>& onProgress);

enum class Piece { More, Last };

// Brings sound to another rate.
class Resampler {
 public:
  Resampler() = default;
  Resampler(const Resampler&) = delete;
  Resampler& operator=(const Resampler&) = delete;
  virtual ~Resampler() = default;

  // Hands what comes out of a piece to the writer. The filter's rest comes out with the last piece, which must not be
  // empty: a rest that is asked for alone never comes.
  virtual void Process(std::span<const float> samples, Piece piece, RecordingWriter& writer) = 0;
};

// REQUIRES: no piece has more than so many frames.
[[nodiscard]] std::unique_ptr<Resampler> MakeResampler(int channels, int fromRate, int toRate, std::size_t pieceFrames);

}  // namespace tavimo::host
