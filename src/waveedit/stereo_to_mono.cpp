#include "waveedit/stereo_to_mono.h"

#include <algorithm>

#include "core/pcm_format.h"
#include "core/wave_header.h"
#include "platform/riff.h"

namespace tavimo::waveedit {

using core::PcmFormat;
using core::WaveFault;
using platform::ChunkInfo;
using platform::RiffFile;

namespace {

bool CanConvert(const PcmFormat& format) noexcept {
  return format.channels == 2 && (format.bitsPerSample == 8 || format.bitsPerSample == 16) && format.sampleRate != 0;
}

PcmFormat MonoFormat(const PcmFormat& stereo) noexcept {
  PcmFormat mono = stereo;
  mono.channels = 1;
  mono.averageBytesPerSecond = core::BytesPerSecond(mono);
  mono.blockAlign = static_cast<std::uint16_t>(mono.averageBytesPerSecond / mono.sampleRate);
  return mono;
}

struct Destination {
  RiffFile file;
  ChunkInfo riff;
  ChunkInfo sub;
};

bool Create(Destination& destination, const char* path, const PcmFormat& format) noexcept {
  destination.file = RiffFile::Open(path, platform::OpenMode::Create);
  return destination.file.IsOpen() && core::CreateWave(destination.file, destination.riff, destination.sub, format,
                                                       core::FormatChunk::Extended) == core::CreateFault::None;
}

// The first channel of a piece; half the piece's bytes, rounded down. An odd end gives the low byte of one more sample.
std::int32_t KeepFirstChannel(const std::uint8_t* stereo, std::int32_t byteCount, std::int32_t sampleBytes,
                              std::uint8_t* mono) noexcept {
  const std::int32_t kept = byteCount / 2;
  if (sampleBytes == 1) {
    for (std::int32_t i = 0; i < kept; ++i) mono[i] = stereo[2 * i];
    return kept;
  }
  const std::int32_t frames = kept / 2;
  for (std::int32_t i = 0; i < frames; ++i) {
    mono[2 * i] = stereo[4 * i];
    mono[2 * i + 1] = stereo[4 * i + 1];
  }
  if (kept % 2 == 1) mono[kept - 1] = stereo[4 * frames];
  return kept;
}

bool Convert(RiffFile& source, const ChunkInfo& data, std::int32_t sampleBytes, RiffFile& destination,
             TransferBuffers& buffers) noexcept {
  std::int64_t left = data.size;
  while (left > 0) {
    const auto wanted = static_cast<std::int32_t>(std::min<std::int64_t>(left, kTransferBytes));
    const std::int32_t got = source.Read(buffers.source.data(), wanted);
    if (got < 0) return false;
    if (got == 0) return true;
    const std::int32_t kept = KeepFirstChannel(buffers.source.data(), got, sampleBytes, buffers.output.data());
    if (destination.Write(buffers.output.data(), kept) != kept) return false;
    left -= got;
  }
  return true;
}

}  // namespace

MonoResult StereoToMono(const char* sourcePath, const char* destinationPath, TransferBuffers& buffers) noexcept {
  RiffFile source = RiffFile::Open(sourcePath, platform::OpenMode::Read);
  if (!source.IsOpen()) return MonoResult::Failed;
  ChunkInfo riff;
  ChunkInfo sub;
  PcmFormat format;
  const WaveFault fault = core::EnterFormat(source, riff, sub, format);
  if (fault != WaveFault::None && fault != WaveFault::FormatNotLeft) return MonoResult::Failed;
  if (format.channels == 1) return MonoResult::AlreadyMono;
  if (fault != WaveFault::None || !CanConvert(format) || core::EnterData(source, riff, sub) != WaveFault::None ||
      platform::IsSameFile(sourcePath, destinationPath)) {
    return MonoResult::Failed;
  }
  Destination destination;
  if (!Create(destination, destinationPath, MonoFormat(format))) return MonoResult::Failed;
  const bool whole = Convert(source, sub, format.bitsPerSample / 8, destination.file, buffers) &&
                     destination.file.Ascend(destination.sub) && destination.file.Ascend(destination.riff);
  return destination.file.Close() && whole ? MonoResult::Written : MonoResult::Failed;
}

}  // namespace tavimo::waveedit
