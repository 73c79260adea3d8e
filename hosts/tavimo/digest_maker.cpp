#include "digest_maker.h"

#include <chrono>
#include <fstream>
#include <iterator>
#include <thread>

#include "content_hash.h"
#include "new_file.h"
#include "peak_digest.h"
#include "progress_bar.h"
#include "refusal.h"
#include "system.h"
#include "tavimo.h"
#include "text.h"
#include "trace.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t kWorkerDone = 1000;
constexpr auto kLongestSilenceOfWorker = std::chrono::seconds(20);
constexpr auto kFirstPoll = std::chrono::milliseconds(1);
constexpr auto kLongestPoll = std::chrono::milliseconds(20);

std::vector<std::uint8_t> ReadAll(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string HashOf(const std::vector<std::uint8_t>& levels) { return ContentHash(levels.data(), levels.size()); }

DigestKind KindOf(const std::vector<std::uint8_t>& levels) {
  std::string mark;
  std::ifstream(kPeakMark) >> mark;
  return mark == HashOf(levels) ? DigestKind::Peak : DigestKind::Exact;
}

[[noreturn]] void RefuseToStore(const fs::path& path) {
  throw Refusal(Readable(path.filename()) + " could not be written in " + Readable(fs::current_path()));
}

void WritePeakMark(const std::string& hash) {
  NewFile mark(kPeakMark);
  mark.Write(hash.data(), hash.size());
  mark.PutInPlace();
}

std::vector<std::uint8_t> MakePeak(const LessonSession& session, ProgressBar& progress) {
  TraceNote("the program makes " + Readable(session.DigestPath().filename()) +
            " itself, of the loudest samples; with --exact the engine makes it");
  // The time from before the reading: a recording that changes meanwhile leaves a digest that is not current.
  std::error_code error;
  const fs::file_time_type time = LastWriteTime(session.Recording(), error);
  if (error) throw Refusal("it cannot be read (" + ReasonOf(error) + ")");
  std::vector<std::uint8_t> levels = PeakLevels(session.Recording(), session.Header(), progress);
  NewFile digest(session.DigestPath());
  digest.Write(levels.data(), levels.size());
  digest.SetTime(time);
  // Before the digest, which without its mark would pass for the engine's; but not where the digest is lost anyway.
  if (digest.IsWhole()) WritePeakMark(HashOf(levels));
  digest.PutInPlace();
  return levels;
}

// The engine says nothing of a worker that could not begin: its percentage just stays 0.
void WaitForWorker(ProgressBar& progress) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point giveUp = Clock::now() + kLongestSilenceOfWorker;
  auto poll = kFirstPoll;
  for (;;) {
    const std::int32_t percent = vcGetMakeDigestPercentage();
    if (percent == kWorkerDone) return;
    progress.Show(percent);
    if (Interrupted()) vcCancelMakeDigest();
    if (percent == 0 && Clock::now() > giveUp) throw Refusal("the engine's digest worker did not begin");
    std::this_thread::sleep_for(poll);
    poll = std::min(poll * 2, kLongestPoll);
  }
}

std::vector<std::uint8_t> MakeExact(const LessonSession& session, ProgressBar& progress) {
  const std::string& recording = session.EngineName();
  if (vcMakeDigestFile(recording.c_str(), recording.c_str(), session.DigestEngineName().c_str()) == 0) {
    throw Refusal("the engine could not start its digest worker");
  }
  WaitForWorker(progress);
  StopIfInterrupted();
  if (!fs::exists(session.DigestPath())) RefuseToStore(session.DigestPath());
  std::vector<std::uint8_t> levels = ReadAll(session.DigestPath());
  if (KindOf(levels) == DigestKind::Peak) fs::remove(kPeakMark);  // both kinds are the same; this one is asked for
  return levels;
}

}  // namespace

Digest OpenDigest(const LessonSession& session, DigestKind kind) {
  Digest digest;
  const std::uint64_t levelCount = session.Header().LevelCount();
  if (vcIfDigestFileExist(session.EngineName().c_str()) == 1) {
    digest.levels = ReadAll(session.DigestPath());
    // One that lay beside the recording is taken over whatever its time, so it may be another recording's.
    digest.wasFound = digest.levels.size() == levelCount && KindOf(digest.levels) == kind;
  }
  if (!digest.wasFound) {
    ProgressBar progress(Readable(session.Recording().filename()));
    digest.levels = kind == DigestKind::Peak ? MakePeak(session, progress) : MakeExact(session, progress);
  }
  if (vcOpenDigestFile(session.DigestEngineName().c_str()) != static_cast<std::int32_t>(levelCount)) {
    throw Refusal("its digest does not fit its sound; was it changed meanwhile?");
  }
  return digest;
}

}  // namespace tavimo::host
