// The tape of a lesson, tmpwav\tmpmic.wav: what the learner is saying right now, until it is kept as a take. A tape that
// a dead program left is finished here; where takes are kept is take_shelf's business, recording is recorder's.
//
// While a tape is recorded, tmpwav/tmpmic.txt tells which sentence it answers, and tmpwav/tmpmic.lock is held: a tape
// whose lock is free and that still lies there belongs to nobody who lives.
//
// All names are relative to the lesson's working folder, which is the current directory.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "wave_header.h"

namespace tavimo::host {

inline constexpr const char* kTapeFile = "tmpwav/tmpmic.wav";
inline constexpr const char* kTapeEngineName = "tmpwav\\tmpmic.wav";
inline constexpr const char* kTapeLockFile = "tmpwav/tmpmic.lock";
inline constexpr int kTapeHeaderBytes = 46;
inline constexpr int kTapeBlockBytes = 1256;

struct TapeNote {
  int sentence = 0;              // 0: not known
  std::uint64_t startBytes = 0;  // what the file held before anything was recorded into it; a take that is continued
  std::string recording;         // UTF-8
};

// Written before the tape, so that no tape is without its note but those of other programs.
void WriteTapeNote(const TapeNote& note);
[[nodiscard]] TapeNote ReadTapeNote();

enum class TapeState {
  Missing,
  Silent,   // no sound has reached it but what it began with
  Whole,    // its sizes are now those of its sound
  Damaged,  // no tape at all
};

// Makes the sizes in the tape's header those of the sound that is in the file, up to its last whole frame. The engine
// writes them only when it closes a tape, and not all of them behind one that was continued. Doing it twice does no
// harm. A Refusal when the file cannot be written.
[[nodiscard]] TapeState FinishTape();

struct KeptTake {
  std::filesystem::path file;  // in the working folder
  int sentence = 0;            // 0: not known
  std::int64_t durationMs = 0;
  std::string recording;
};

// Finishes the tape and moves it to the takes of the sentence that its note names; none where there was no sound to
// keep. Damaged ones are moved away too, untouched. A Refusal when it cannot be moved: it then lies where it was.
// REQUIRES: the tape's lock is held.
std::optional<KeptTake> KeepTape();

// Bytes of sound up to the last whole frame; never an odd number, as the engine's positions are not.
[[nodiscard]] std::uint64_t WholeFrames(std::uint64_t byteCount, const WaveHeader& header);

// Removes a tape that has nothing worth keeping, with its note.
void DiscardTape();

}  // namespace tavimo::host
