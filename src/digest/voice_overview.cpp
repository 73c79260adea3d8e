#include "digest/voice_overview.h"

#include <algorithm>

#include "recording/level_meter.h"

namespace tavimo::digest {

using platform::ChunkInfo;
using platform::RiffFile;

namespace {

constexpr std::uint32_t kMostSamples = 165750;
constexpr std::uint32_t kSampleBytes = 2;
static_assert(kMostSamples / kOverviewColumns * kSampleBytes == kMostRunBytes);

// Missing samples at the end count as silence; chunks behind the sound are never taken for sound.
std::uint32_t NextLevel(RiffFile& file, std::span<std::uint8_t> buffer, std::uint32_t runBytes,
                        std::uint32_t bytesLeft) {
  const std::span<std::uint8_t> run = buffer.first(runBytes);
  std::fill(run.begin(), run.end(), std::uint8_t{0});
  file.Read(run.data(), static_cast<std::int32_t>(std::min(runBytes, bytesLeft)));
  return static_cast<std::uint32_t>(recording::AverageLevel16(run));
}

void Reduce(RiffFile& file, std::uint32_t dataBytes, std::uint32_t samples, std::span<std::uint8_t> buffer,
            VoiceVisualTable& table) noexcept {
  const std::uint32_t samplesPerLevel = samples / kOverviewColumns;
  if (samplesPerLevel == 0) return table.fill(0);
  const std::uint32_t runBytes = samplesPerLevel * kSampleBytes;
  std::uint32_t taken = 0;
  for (std::size_t k = 0; k < table.size() && taken < samples; ++k, taken += samplesPerLevel) {
    const std::uint32_t at = taken * kSampleBytes;
    table[k] = NextLevel(file, buffer, runBytes, dataBytes - std::min(at, dataBytes));
  }
}

}  // namespace

OverviewResult ReadVoiceOverview(const char* path, std::span<std::uint8_t> buffer, VoiceVisualTable& table) noexcept {
  OverviewResult result;
  RiffFile file = RiffFile::Open(path, platform::OpenMode::Read);
  result.opened = file.IsOpen();
  if (!result.opened) return result;
  ChunkInfo riff;
  ChunkInfo sub;
  core::PcmFormat format;
  result.fault = core::EnterFormat(file, riff, sub, format);
  if (result.fault == core::WaveFault::None) result.fault = core::EnterData(file, riff, sub);
  if (result.fault != core::WaveFault::None) return result;
  const std::uint32_t samples = sub.size / kSampleBytes;
  result.truncated = samples > kMostSamples;
  Reduce(file, sub.size, std::min(samples, kMostSamples), buffer, table);
  return result;
}

}  // namespace tavimo::digest
