// `tavimo extract` and `tavimo mono`: a part of a recording, or one channel of it, in a wave file of its own.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <vector>

#include "lesson_lock.h"
#include "new_file.h"
#include "options.h"
#include "plain_wave.h"
#include "refusal.h"
#include "sentence_stretch.h"
#include "tavimo.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kCopyBytes = std::size_t{256} * 1024;

// The file that the engine writes, in the working folder: the person's own name for it may have no GBK form. What is not
// put in place is removed.
class EngineOutput {
 public:
  EngineOutput() : lock_("tmpwav/output.lock", "another tavimo is copying from it right now") { Remove(); }
  EngineOutput(const EngineOutput&) = delete;
  EngineOutput& operator=(const EngineOutput&) = delete;
  ~EngineOutput() { Remove(); }

  [[nodiscard]] static const char* EngineName() { return "tmpwav\\output.wav"; }

  static constexpr const char* kFile = "tmpwav/output.wav";
  static void PutInPlace(const fs::path& path) { PlaceFile(kFile, path); }

 private:
  static void Remove() {
    std::error_code ignored;
    fs::remove(kFile, ignored);
  }

  LessonLock lock_;
};

Stretch StretchFor(LessonSession& session, const Options& options) {
  if (options.sentence) return StretchOf(session, *options.sentence);
  const std::int64_t durationMs = session.Header().DurationMs();
  const Stretch stretch{options.fromMs, options.toMs.value_or(durationMs)};
  if (stretch.startMs < durationMs && stretch.endMs <= durationMs) return stretch;
  throw Refusal("it ends at " + FormatTime(durationMs) + ", before " +
                FormatTime(stretch.startMs < durationMs ? stretch.endMs : stretch.startMs));
}

// Whole frames, from the sound's own start: the engine's copy begins at a fixed place in the file and would take other
// chunks for sound, or begin within a frame.
void CopyStretch(const LessonSession& session, const Stretch& stretch, const fs::path& output) {
  const WaveHeader& header = session.Header();
  const std::uint64_t first = header.ByteAt(stretch.startMs);
  const std::uint64_t byteCount = header.ByteAt(stretch.endMs) - first;
  if (byteCount == 0) throw Refusal("there is no sound in that stretch");
  std::ifstream recording(session.Recording(), std::ios::binary);
  recording.seekg(static_cast<std::streamoff>(header.dataOffset + first));
  NewFile copy(output);
  const auto start = PlainHeader({header.sampleRate, header.channels, header.bitsPerSample}, byteCount);
  copy.Write(start.data(), start.size());
  std::vector<char> piece(kCopyBytes);
  for (std::uint64_t left = byteCount; left > 0;) {
    const auto wanted = static_cast<std::streamsize>(std::min<std::uint64_t>(left, piece.size()));
    if (!recording.read(piece.data(), wanted)) throw Refusal("its sound cannot be read to the end");
    copy.Write(piece.data(), static_cast<std::size_t>(wanted));
    left -= static_cast<std::uint64_t>(wanted);
  }
  if (byteCount % 2 != 0) copy.Write("", 1);  // chunks begin at even places
  copy.PutInPlace();
}

void Report(const fs::path& output) {
  const WaveHeader header = ReadWaveHeader(output);
  std::cout << Readable(output) << ": " << DescribeFormat(header) << ", " << FormatTime(header.DurationMs()) << '\n';
}

[[noreturn]] void RefuseUnwritten() {
  throw Refusal("the new recording could not be written in " + Readable(fs::current_path() / "tmpwav"));
}

}  // namespace

int RunExtract(const Options& options) {
  LessonSession session(options.home, options.files.front());
  CheckOutput(session.Recording(), options.output, options.force ? Existing::Replace : Existing::Keep);
  const Stretch stretch = StretchFor(session, options);
  CopyStretch(session, stretch, options.output);
  Report(options.output);
  return kDone;
}

int RunMono(const Options& options) {
  const LessonSession session(options.home, options.files.front());
  CheckOutput(session.Recording(), options.output, options.force ? Existing::Replace : Existing::Keep);
  const EngineOutput output;
  const std::int32_t result = vcSteroToMono(session.EngineName().c_str(), EngineOutput::EngineName());
  if (result == 1) throw Refusal("it has one channel already");
  if (result != 0) RefuseUnwritten();
  EngineOutput::PutInPlace(options.output);
  Report(options.output);
  return kDone;
}

}  // namespace tavimo::host
