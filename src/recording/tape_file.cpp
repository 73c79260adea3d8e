#include "recording/tape_file.h"

#include <algorithm>
#include <limits>

#include "core/arithmetic.h"
#include "core/wave_header.h"
#include "platform/files.h"

namespace tavimo::recording {

using core::WrappingMultiply;
using platform::OpenMode;
using platform::RiffFile;

namespace {

constexpr std::int64_t kHighestPosition = std::numeric_limits<std::int32_t>::max();

TapeFault FaultOf(core::CreateFault fault) noexcept {
  switch (fault) {
    case core::CreateFault::None:
      return TapeFault::None;
    case core::CreateFault::NoRiffChunk:
      return TapeFault::CannotCreateRiff;
    case core::CreateFault::NoFormatChunk:
      return TapeFault::CannotCreateFormat;
    case core::CreateFault::FormatUnwritten:
      return TapeFault::CannotWriteFormat;
    case core::CreateFault::FormatNotLeft:
      return TapeFault::CannotLeaveFormat;
    case core::CreateFault::NoDataChunk:
      return TapeFault::CannotCreateData;
  }
  return TapeFault::CannotCreate;
}

TapeFault FaultOf(core::WaveFault fault) noexcept {
  switch (fault) {
    case core::WaveFault::None:
      return TapeFault::None;
    case core::WaveFault::NoFirstChunk:
      return TapeFault::NoFirstChunk;
    case core::WaveFault::NotWave:
      return TapeFault::NotWave;
    case core::WaveFault::NoFormatChunk:
      return TapeFault::NoFormatChunk;
    case core::WaveFault::ShortFormatChunk:
      return TapeFault::ShortFormatChunk;
    case core::WaveFault::FormatUnreadable:
      return TapeFault::FormatUnreadable;
    case core::WaveFault::FormatNotLeft:
      return TapeFault::FormatNotLeft;
    case core::WaveFault::NoDataChunk:
      return TapeFault::NoDataChunk;
  }
  return TapeFault::NotWave;
}

TapeFault EnterTape(core::CurrentWaveFile& tape, core::PcmFormat& format) noexcept {
  RiffFile& file = tape.mmioHandle;
  const core::WaveFault atFormat = core::EnterFormat(file, tape.riffChunk, tape.subChunk, format);
  if (atFormat != core::WaveFault::None) return FaultOf(atFormat);
  if (format.formatTag != core::kPcmFormatTag) return TapeFault::NotPcm;
  return FaultOf(core::EnterData(file, tape.riffChunk, tape.subChunk));
}

}  // namespace

void SetTapeFormat(core::TapeFormat& format, std::int32_t rate, std::int32_t bits, std::int32_t channels) noexcept {
  constexpr std::int32_t kLevelsPerSecond = 25;
  format.sampleRate = rate;
  format.bitsPerSample = bits;
  format.channels = channels;
  format.samplesPerLevel = rate / kLevelsPerSecond;
  const std::int32_t sampleBytes = bits / 8;
  format.deviceFormat = {
      core::kPcmFormatTag,
      static_cast<std::uint16_t>(channels),
      static_cast<std::uint32_t>(rate),
      static_cast<std::uint32_t>(WrappingMultiply(WrappingMultiply(sampleBytes, rate), channels)),
      static_cast<std::uint16_t>(WrappingMultiply(sampleBytes, channels)),
      static_cast<std::uint16_t>(bits),
  };
}

bool FitsDevice(const core::TapeFormat& format) noexcept {
  return format.deviceFormat.channels == format.channels && format.deviceFormat.bitsPerSample == format.bitsPerSample;
}

TapeFault NewTape(const char* path, const core::TapeFormat& tapeFormat, core::CurrentWaveFile& tape,
                  core::PcmFormat& currentFormat) noexcept {
  tape.riffChunk = {};
  tape.subChunk = {};
  tape.mmioHandle = RiffFile::Open(path, OpenMode::Create);
  if (!tape.mmioHandle.IsOpen()) return TapeFault::CannotCreate;
  currentFormat = tapeFormat.deviceFormat;
  const core::CreateFault fault =
      core::CreateWave(tape.mmioHandle, tape.riffChunk, tape.subChunk, currentFormat, core::FormatChunk::Extended);
  if (fault != core::CreateFault::None) return FaultOf(fault);
  tape.dataOffset = static_cast<std::int32_t>(tape.subChunk.dataOffset);
  tape.filePosition = tape.dataOffset;
  tape.dataLength = 0;
  return TapeFault::None;
}

TapeFault AppendTape(const char* path, core::CurrentWaveFile& tape, core::PcmFormat& currentFormat) noexcept {
  const platform::FileStream readable = platform::FileStream::Open(path, OpenMode::Read);
  if (!readable.IsOpen()) return TapeFault::CannotRead;
  tape.mmioHandle.Close();
  tape.mmioHandle = RiffFile::Open(path, OpenMode::ReadWrite);
  if (!tape.mmioHandle.IsOpen()) return TapeFault::CannotWrite;
  const TapeFault fault = EnterTape(tape, currentFormat);
  if (fault != TapeFault::None) {
    tape.mmioHandle.Close();
    return fault;
  }
  tape.dataOffset = static_cast<std::int32_t>(tape.subChunk.dataOffset);
  tape.filePosition = tape.dataOffset;
  // The end of the sound is a position too, and positions have 32 bits.
  tape.dataLength = core::HoldToInt32(std::min<std::int64_t>(readable.Length(), kHighestPosition) - tape.dataOffset);
  return TapeFault::None;
}

void WriteBlock(core::CurrentWaveFile& tape, std::span<const std::uint8_t> block) noexcept {
  const auto byteCount = static_cast<std::int32_t>(block.size());
  if (tape.mmioHandle.Write(block.data(), byteCount) == byteCount) return;
  tape.mmioHandle.Seek(std::int64_t{tape.filePosition} + byteCount, platform::SeekFrom::Start);
}

bool SaveTape(const char* source, const char* destination) noexcept {
  if (platform::MoveFileTo(source, destination)) return true;
  if (!platform::CopyFileOver(source, destination)) return false;
  platform::RemoveFile(source);
  return true;
}

}  // namespace tavimo::recording
