// The handler of captured blocks: alone, and beside the digest worker on a machine of two cores.
#include <filesystem>

#include "job.h"
#include "limits.h"
#include "tavimo.h"
#include "tavimo_host.h"

namespace tavimo::bench {

namespace {

constexpr std::int32_t kRate = 22050;
constexpr int kBlockBytes = 1256;
constexpr int kBlocksOfAnHour = 3600 * kRate * 2 / kBlockBytes;
constexpr double kTail = 0.999;

// A recording in progress, whose blocks come when they are called for.
class Recording {
 public:
  Recording() {
    Expect(tvUseWaveInput("host") == 0, "tvUseWaveInput");
    vcSetMainWnd(main_);
    vcSetWaveInAndOutWndProc(0, wave_);
    vcSetRecordingVolumeBarHandle(bar_);
    Expect(vcNewTapeFile(kRate, 16, 1, "tmpwav\\tmpmic.wav") == 0, "vcNewTapeFile");
    Expect(vcWaveInOpenForTape(kRate, 16, 1) == 1, "vcWaveInOpenForTape");
    vcRecordTape();
  }
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;
  ~Recording() {
    vcWaveInCloseForTape();
    vcCloseWaveFile(3);
  }

  // The time from a block's message to the end of its handler: the device fills it before, and what the handler posts
  // is dispatched after.
  double HandleBlock(const std::vector<std::uint8_t>& block) {
    Expect(tvFeedWaveInput(block.data(), kBlockBytes) == kBlockBytes, "tvFeedWaveInput");
    const double seconds = SecondsOf([] { tvDispatchMessages(0); });
    tvDispatchMessages(0);
    return seconds;
  }

 private:
  VcWindow main_ = tvCreateWindow(TV_WINDOW, nullptr, nullptr);
  VcWindow wave_ = tvCreateWindow(TV_WINDOW, nullptr, nullptr);
  VcWindow bar_ = tvCreateWindow(TV_PROGRESS_BAR, nullptr, nullptr);
};

std::vector<std::uint8_t> Block() {
  std::vector<std::uint8_t> block(kBlockBytes);
  for (std::size_t i = 0; i < block.size(); ++i) block[i] = static_cast<std::uint8_t>(i * 37);
  return block;
}

Measurement MeasureCapture(const Inputs&) {
  const std::vector<std::uint8_t> block = Block();
  Recording recording;
  BlockFile limit("limit.wav");
  std::vector<double> seconds(kBlocksOfAnHour);
  std::vector<double> limitSeconds(kBlocksOfAnHour);
  std::int64_t sum = 0;
  Measurement result;
  result.byteCount = kBlockBytes;
  result.peakBytes = PeakBytesOf([&] {
    for (std::size_t i = 0; i < seconds.size(); ++i) {
      limitSeconds[i] = SecondsOf([&] { sum += limit.Append(block); });
      seconds[i] = recording.HandleBlock(block);
    }
  });
  Expect(sum > 0, "the limit's sum");
  result.seconds = Median(seconds);
  result.limitSeconds = Median(limitSeconds);
  result.times = result.seconds / result.limitSeconds;
  result.tailSeconds = Quantile(seconds, kTail);
  return result;
}

// Blocks come without a pause, which is some thousand times as often as a device brings them.
Measurement MeasureBesideWorker(const Inputs&) {
  constexpr std::int32_t kDone = 1000;
  const std::vector<std::uint8_t> block = Block();
  Recording recording;
  std::vector<double> seconds;
  Measurement result;
  result.peakBytes = PeakBytesOf([&] {
    for (int digests = 0; digests < 5; ++digests) {
      Expect(vcMakeDigestFile(kStereoHour, kStereoHour, "temp\\stereo.tmp") == 1, "vcMakeDigestFile");
      while (vcGetMakeDigestPercentage() != kDone) seconds.push_back(recording.HandleBlock(block));
    }
  });
  result.byteCount = kBlockBytes;
  result.seconds = Median(seconds);
  result.tailSeconds = Quantile(seconds, kTail);
  return result;
}

}  // namespace

std::vector<Job> CaptureJobs() {
  return {{.name = "capture",
           .what = "a captured block, of an hour's",
           .inputs = {},
           .mostTimes = 3,
           .mostTailSeconds = 50e-6,
           .measure = MeasureCapture},
          {.name = "capture-beside-digest",
           .what = "a captured block while the digest worker runs",
           .inputs = {Input::StereoHour},
           .mostTailSeconds = 1e-3,
           .measure = MeasureBesideWorker}};
}

}  // namespace tavimo::bench
