#include "core/wave_header.h"

#include <algorithm>
#include <array>

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

CreateFault CreateWave(platform::RiffFile& file, platform::ChunkInfo& riff, platform::ChunkInfo& sub,
                       const PcmFormat& format, FormatChunk formatChunk) noexcept {
  riff.formType = platform::FourCc("WAVE");
  if (!file.CreateRiff(riff)) return CreateFault::NoRiffChunk;
  sub.id = platform::FourCc("fmt ");
  sub.size = static_cast<std::uint32_t>(formatChunk);
  if (!file.CreateChunk(sub)) return CreateFault::NoFormatChunk;
  std::array<std::uint8_t, static_cast<std::size_t>(FormatChunk::Extended)> bytes{};
  const PcmFormatRecord record = WritePcmFormat(format);
  std::copy(record.begin(), record.end(), bytes.begin());
  const auto byteCount = static_cast<std::int32_t>(formatChunk);
  if (file.Write(bytes.data(), byteCount) != byteCount) return CreateFault::FormatUnwritten;
  if (!file.Ascend(sub)) return CreateFault::FormatNotLeft;
  sub.id = platform::FourCc("data");  // its provisional size is the format's
  return file.CreateChunk(sub) ? CreateFault::None : CreateFault::NoDataChunk;
}

}  // namespace tavimo::core
