// The door of digests and waveforms.
#include "core/arithmetic.h"
#include "core/core_state.h"
#include "core/fixed_text.h"
#include "digest/digest_adjust.h"
#include "digest/digest_state.h"
#include "digest/digest_summary.h"
#include "digest/voice_overview.h"
#include "hostutil/temp_side_file.h"
#include "platform/files.h"
#include "platform/gbk_literal.h"
#include "platform/threads.h"
#include "platform/utility.h"
#include "platform/windows.h"
#include "tavimo.h"

namespace {

using namespace tavimo;
using digest::State;

class BarObserver final : public digest::SummaryObserver {
 public:
  explicit BarObserver(VcWindow bar) noexcept : bar_(bar) {}

  digest::Continue OnPiece(const digest::SummaryProgress& progress) noexcept override {
    for (std::int32_t percent = 0; steps_.Next(progress, percent);) {
      platform::SendToWindow(bar_, platform::kMessageSetBarPosition, static_cast<std::uintptr_t>(percent), 0);
    }
    return digest::Continue::Yes;
  }

 private:
  VcWindow bar_;
  digest::ProgressSteps steps_;
};

void RunWorker() noexcept { digest::RunJob(State().digestJob, State().workerWorkspace); }

void DrawFullWave(platform::FileStream& digest, const digest::WaveArea& area, std::int32_t levelsPerPair,
                  std::int32_t fromBottom) noexcept {
  const digest::FullWave style = fromBottom != 0 ? digest::FullWave::FromBottom : digest::FullWave::Centred;
  digest::DrawDigestWave(digest, area, levelsPerPair, style, State().digestColumns);
}

// What the learner is told when the recording cannot be shown (GBK); null when it can. The full stop of the fifth text
// stands behind the number; support knows it so.
const char* OverviewMessage(const digest::OverviewResult& result) noexcept {
  using namespace platform::literals;
  if (!result.opened) return u8"临时文件打不开。ErrorNo 69"_gbk;
  switch (result.fault) {
    case core::WaveFault::None:
      return nullptr;
    case core::WaveFault::NoFirstChunk:
      return u8"临时文件打不开。ErrorNo 70"_gbk;
    case core::WaveFault::NotWave:
      return u8"不是wave声音文件,无法播放。ErrorNo 71"_gbk;
    case core::WaveFault::NoFormatChunk:
      return u8"无效的wave声音文件,无法播放。ErrorNo 72"_gbk;
    case core::WaveFault::ShortFormatChunk:
      return u8"无效的wave声音文件,无法播放ErrorNo 73。"_gbk;
    case core::WaveFault::FormatUnreadable:
      return u8"临时文件读出错。ErrorNo 74"_gbk;
    case core::WaveFault::FormatNotLeft:
      return u8"文件读出错。ErrorNo 75"_gbk;
    case core::WaveFault::NoDataChunk:
      return u8"文件读出错。ErrorNo 76"_gbk;
  }
  return nullptr;
}

bool FitsJob(const char* path) noexcept { return core::TextOf(path).size() <= digest::JobPath::kRoom; }

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
  if (!FitsJob(wave_path) || !FitsJob(digest_path) || !FitsJob(source_path) ||
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
  if (State().currentDigest.IsOpen()) {
    DrawFullWave(State().currentDigest, {dc, height, width, start_ms}, levels_per_pair, from_bottom);
  }
}

void VC_CALL vcDrawManVoiceDigestWave(VcDc dc, std::int32_t height, std::int32_t width, std::int32_t start_ms,
                                      std::int32_t levels_per_pair, std::int32_t from_bottom) noexcept {
  platform::FileStream voice = platform::FileStream::Open("tmpwav\\tmpmic.tmp", platform::OpenMode::Read);
  if (voice.IsOpen()) DrawFullWave(voice, {dc, height, width, start_ms}, levels_per_pair, from_bottom);
}

void VC_CALL vcDrawSrcWave(VcDc dc, std::int32_t height) noexcept {
  digest::DrawOverview(dc, height, State().sourceVisualTable);
}

void VC_CALL vcDrawManWave(VcDc dc, std::int32_t height) noexcept {
  digest::DrawOverview(dc, height, std::span(State().voiceVisualTable).first<digest::kOverviewColumns>());
}

std::int32_t VC_CALL vcSetVisualWaveDataMan(std::int32_t clear) noexcept {
  digest::VoiceVisualTable& table = State().voiceVisualTable;
  if (clear != 0) {
    table.fill(0);
    return 0;
  }
  const digest::OverviewResult result =
      digest::ReadVoiceOverview("tmpwav\\tmpmic.wav", core::State().voiceReadBuffer, table);
  if (const char* message = OverviewMessage(result); message != nullptr) {
    platform::ShowMessageBox(message, "Tavimo");
    return -1;
  }
  return result.truncated ? 1 : 0;
}

}  // extern "C"
