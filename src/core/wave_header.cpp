#include "core/wave_header.h"

namespace tavimo::core {

namespace {

WaveFault EnterRiff(platform::RiffFile& file, platform::ChunkInfo& riff) noexcept {
  if (!file.Descend(riff)) return WaveFault::NoFirstChunk;
  const bool isWave = riff.id == platform::FourCc("RIFF") && riff.formType == platform::FourCc("WAVE");
  return isWave ? WaveFault::None : WaveFault::NotWave;
}

}  // namespace

WaveFault EnterFormat(platform::RiffFile& file, platform::ChunkInfo& riff, platform::ChunkInfo& sub,
                      PcmFormat& format) noexcept {
  if (const WaveFault fault = EnterRiff(file, riff); fault != WaveFault::None) return fault;
  sub.id = platform::FourCc("fmt ");
  if (!file.Find(sub, riff)) return WaveFault::NoFormatChunk;
  if (sub.size < kPcmFormatBytes) return WaveFault::ShortFormatChunk;
  PcmFormatRecord record;
  if (file.Read(record.data(), kPcmFormatBytes) != kPcmFormatBytes) return WaveFault::FormatUnreadable;
  format = ReadPcmFormat(record);
  return file.Ascend(sub) ? WaveFault::None : WaveFault::FormatNotLeft;
}

WaveFault EnterData(platform::RiffFile& file, const platform::ChunkInfo& riff, platform::ChunkInfo& sub) noexcept {
  sub.id = platform::FourCc("data");
  return file.Find(sub, riff) ? WaveFault::None : WaveFault::NoDataChunk;
}

}  // namespace tavimo::core
