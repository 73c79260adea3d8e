// Cutting chosen sentences out of a recording: the kept sound is written to a temporary wave file, which takes the
// recording's place only when it is whole. Showing progress and storing the study file are the door's.
#pragma once

#include <cstdint>
#include <span>

namespace tavimo::waveedit {

// A start of a deleted sentence.
inline constexpr std::uint32_t kDeletedStart = 0xFFFFFFFF;

class DeletionObserver {
 public:
  virtual void OnBegin() noexcept = 0;
  virtual void OnPercent(std::int32_t percent) noexcept = 0;

 protected:
  ~DeletionObserver() = default;
};

struct SentenceSelection {
  std::span<const std::uint32_t> startsMs;  // at least one, never decreasing
  std::span<const std::uint32_t> flags;     // as many; a value other than 0 deletes its sentence
};

[[nodiscard]] bool IsUsable(const SentenceSelection& selection) noexcept;

// Replaces the recording by one without the chosen sentences. Sentence i reaches to start i + 1, the last one to the end
// of the sound; what lies before the first start is kept. False, and the recording is as it was: it cannot be opened,
// "tmpwav\tmpdest.wav" cannot be written whole, or it cannot take the recording's place (it then stays).
// REQUIRES: IsUsable.
[[nodiscard]] bool DeleteSentences(const char* recordingPath, const SentenceSelection& selection,
                                   DeletionObserver& observer) noexcept;

// Moves the kept starts to where their sentences are now and marks the deleted ones. REQUIRES: as many flags as starts.
void ShiftStarts(std::span<std::uint32_t> startsMs, std::span<const std::uint32_t> flags) noexcept;

}  // namespace tavimo::waveedit
