// Summarising a wave file into a digest file: one sequential pass, the digest put in place whole or not at all. Serves
// both makers; which thread runs it and what becomes of the progress is theirs.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tavimo::digest {

// Sound is read in pieces of this size: the speed of reading a file at once, little memory.
inline constexpr std::size_t kPieceBytes = 256 * 1024;

struct SummaryWorkspace {
  std::array<std::uint8_t, kPieceBytes> sound;
  std::array<std::uint8_t, kPieceBytes + 1> levels;  // a block is one byte at least
};

// How far a summary has come; handed over after every piece.
struct SummaryProgress {
  std::int64_t blocksDone = 0;
  std::int64_t bytesDone = 0;
  std::int64_t blockBytes = 0;
  std::int64_t dataLength = 0;  // as the data chunk says
};

// Progress as a bar is told it: looked at after every 1024th block, and only when the percentage has risen.
class ProgressSteps {
 public:
  // False when there is nothing more to tell for now.
  [[nodiscard]] bool Next(const SummaryProgress& progress, std::int32_t& percent) noexcept;

 private:
  std::int64_t nextBlock_ = 1024;
  std::int64_t highest_ = 0;
};

enum class Continue { Yes, No };

class SummaryObserver {
 public:
  virtual Continue OnPiece(const SummaryProgress& progress) noexcept = 0;

 protected:
  ~SummaryObserver() = default;
};

enum class SummaryEnd {
  Written,
  Stopped,       // by the observer; no digest was put in place
  CannotBegin,   // the wave cannot be opened or the digest cannot be created; nothing changed
  CannotFinish,  // reading or writing failed on the way; no digest was put in place
};

// REQUIRES: paths of at most 199 bytes.
[[nodiscard]] SummaryEnd SummarizeWave(const char* wavePath, const char* digestPath, SummaryWorkspace& workspace,
                                       SummaryObserver& observer) noexcept;

}  // namespace tavimo::digest
