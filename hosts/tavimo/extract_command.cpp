// `tavimo extract` and `tavimo mono`: a part of a recording, or one channel of it, in a wave file of its own.
#include <iostream>
#include <vector>

#include "new_file.h"
#include "options.h"
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
  EngineOutput() { Remove(); }
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
};

Stretch StretchFor(LessonSession& session, const Options& options) {
  if (options.sentence) return StretchOf(session, *options.sentence);
  const std::int64_t durationMs = session.Header().DurationMs();
  const Stretch stretch{options.fromMs, options.toMs.value_or(durationMs)};
  if (stretch.startMs < durationMs && stretch.endMs <= durationMs) return stretch;
  throw Refusal("it ends at " + FormatTime(durationMs) + ", before " +
                FormatTime(stretch.startMs < durationMs ? stretch.endMs : stretch.startMs));
}

// The engine does not tell of a disk that was full; the copy then ends early.
bool IsWhole(const fs::path& file, std::int64_t lengthMs) {
  constexpr std::int64_t kSlackMs = 2;  // the engine counts in whole milliseconds and begins a little behind the header
  const WaveHeader header = ReadWaveHeader(file);
  return header.problem.empty() && !header.IsTruncated() && header.DurationMs() + kSlackMs >= lengthMs;
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
  if (stretch.endMs <= stretch.startMs) throw Refusal("there is no sound in that stretch");
  const EngineOutput output;
  std::vector<char> buffer(kCopyBytes);
  const std::int32_t result = vcExtractWaveSeg(
      session.EngineName().c_str(), EngineOutput::EngineName(), static_cast<std::uint32_t>(stretch.startMs),
      static_cast<std::uint32_t>(stretch.endMs - 1), buffer.data(), static_cast<std::int32_t>(buffer.size()));
  if (result != 1 || !IsWhole(EngineOutput::kFile, stretch.endMs - stretch.startMs)) RefuseUnwritten();
  EngineOutput::PutInPlace(options.output);
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
