// The door of digests and waveforms.
#include <algorithm>

#include "core/arithmetic.h"
#include "core/core_state.h"
#include "core/fixed_text.h"
#include "digest/digest_adjust.h"
#include "digest/digest_state.h"
#include "digest/digest_summary.h"
#include "hostutil/temp_side_file.h"
#include "platform/files.h"
#include "platform/threads.h"
#include "platform/utility.h"
#include "platform/windows.h"
#include "tavimo.h"

namespace {

using namespace tavimo;
using digest::State;

// Sends the percentage to a progress bar after every 1024th block, when it has risen.
class BarObserver final : public digest::SummaryObserver {
 public:
  explicit BarObserver(VcWindow bar) noexcept : bar_(bar) {}

  digest::Continue OnPiece(const digest::SummaryProgress& progress) noexcept override {
    constexpr std::int64_t kStep = 1024;
    for (; nextBlock_ <= progress.blocksDone; nextBlock_ += kStep) {
      const std::int64_t bytes = std::min(nextBlock_ * progress.blockBytes, progress.bytesDone);
      const std::int64_t percent = bytes * 100 / progress.dataLength;
      if (percent <= highest_) continue;
      highest_ = percent;
      if (bar_ != nullptr) {
        platform::SendToWindow(bar_, platform::kMessageSetBarPosition, static_cast<std::uintptr_t>(percent), 0);
      }
    }
    return digest::Continue::Yes;
  }

 private:
  VcWindow bar_;
  std::int64_t nextBlock_ = 1024;
  std::int64_t highest_ = 0;
};

void RunWorker() noexcept { digest::RunJob(State().digestJob, State().workerWorkspace); }

bool FitsJob(const char* path) noexcept {
  return !core::TextOf(path).empty() && core::TextOf(path).size() <= digest::JobPath::kRoom;
}

}  // namespace

extern "C" {

std::int32_t VC_CALL vcIfDigestFileExist(const char* recording_path) noexcept {
  return hostutil::EnsureSideFile(recording_path, ".tmp") ? 1 : 0;
}

std::int32_t VC_CALL vcMakeDigestFile(const char* source_path, const char* wave_path,
                                      const char* digest_path) noexcept {
  digest::DigestJob& job = State().digestJob;
  if (!digest::BeginJob(job, source_path, wave_path, digest_path)) return 0;
  if (platform::StartThread(RunWorker)) return 1;
  digest::AbandonJob(job);
  return 0;
}

std::int32_t VC_CALL vcGetMakeDigestPercentage() noexcept {
  return State().digestJob.percentage.load() & ~digest::kWorkerRuns;
}

void VC_CALL vcCancelMakeDigest() noexcept { State().digestJob.cancelRequested.store(1); }

std::int32_t VC_CALL vcSimpleMakeDigestFile(const char* source_path, const char* wave_path, const char* digest_path,
                                            VcWindow progress_window) noexcept {
  if (!FitsJob(wave_path) || !FitsJob(digest_path) || (source_path != nullptr && !FitsJob(source_path)) ||
      platform::IsSameFile(source_path, digest_path)) {
    return -1;
  }
  BarObserver observer(progress_window);
  const digest::SummaryEnd end = digest::SummarizeWave(wave_path, digest_path, State().hostWorkspace, observer);
  if (end != digest::SummaryEnd::Written) return -1;
  if (source_path != nullptr) platform::SetSameFileTime(source_path, digest_path);
  return 1;
}

std::int32_t VC_CALL vcOpenDigestFile(const char* digest_path) noexcept {
  platform::FileStream& current = State().currentDigest;
  current = platform::FileStream::Open(digest_path, platform::OpenMode::Read);
  return current.IsOpen() ? core::HoldToInt32(current.Length()) : -1;
}

void VC_CALL vcCloseDigestFile() noexcept { State().currentDigest.Close(); }

void VC_CALL vcAdjustDigestFile(const char* digest_path, std::int32_t duration_ms) noexcept {
  digest::AdjustDigest(digest_path, duration_ms);
}

void VC_CALL vcDrawHalfDigestWave(VcDc dc, std::int32_t height, std::int32_t width, std::int32_t start_ms,
                                  std::int32_t levels_per_column) noexcept {
  if (!State().currentDigest.IsOpen()) return;
  const core::TapeFormat& format = core::State().tapeFormat;
  digest::DrawHalfWave(State().currentDigest, {dc, height, width, start_ms}, levels_per_column,
                       digest::LevelsPerSecond(format.sampleRate, format.samplesPerLevel));
}

void VC_CALL vcDrawSrcDigestWave(VcDc dc, std::int32_t height, std::int32_t width, std::int32_t start_ms,
                                 std::int32_t levels_per_pair, std::int32_t from_bottom) noexcept {
  if (!State().currentDigest.IsOpen()) return;
  digest::DrawDigestWave(State().currentDigest, {dc, height, width, start_ms}, levels_per_pair,
                         from_bottom != 0 ? digest::FullWave::FromBottom : digest::FullWave::Centred,
                         State().digestColumns);
}

}  // extern "C"
