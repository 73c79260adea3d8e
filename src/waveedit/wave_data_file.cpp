#include "waveedit/wave_data_file.h"

#include <algorithm>

#include "core/arithmetic.h"
#include "core/time_model.h"
#include "core/wave_header.h"

namespace tavimo::waveedit {

using platform::OpenMode;
using platform::RiffFile;
using platform::SeekFrom;

namespace {

std::int32_t Fail(WaveDataFile& file) noexcept {
  file.mmioHandle.Close();
  return -1;
}

bool HasKnownChannels(const core::PcmFormat& format) noexcept { return format.channels == 1 || format.channels == 2; }

// From the position to the end of the sound, as the data chunk says it.
std::int64_t SoundLeft(const WaveDataFile& file) noexcept {
  return std::int64_t{file.dataOffset} + file.dataLength - file.mmioHandle.Position();
}

}  // namespace

std::int32_t WaveDataOpen(WaveDataFile& file) noexcept {
  file.failed = false;
  file.mmioHandle = RiffFile::Open(file.path.CString(), OpenMode::Read);
  if (!file.mmioHandle.IsOpen()) return -1;
  using core::WaveFault;
  if (core::EnterFormat(file.mmioHandle, file.riffChunk, file.subChunk, file.format) != WaveFault::None ||
      !HasKnownChannels(file.format) ||
      core::EnterData(file.mmioHandle, file.riffChunk, file.subChunk) != WaveFault::None) {
    return Fail(file);
  }
  file.dataLength = static_cast<std::int32_t>(file.subChunk.size);
  file.dataOffset = static_cast<std::int32_t>(file.subChunk.dataOffset);
  return 1;
}

std::int32_t WaveDataCreate(WaveDataFile& file) noexcept {
  file.failed = false;
  file.riffChunk = {};
  file.subChunk = {};
  file.mmioHandle = RiffFile::Open(file.path.CString(), OpenMode::Create);
  if (!file.mmioHandle.IsOpen()) return -1;
  const core::CreateFault fault =
      core::CreateWave(file.mmioHandle, file.riffChunk, file.subChunk, file.format, core::FormatChunk::Plain);
  return fault == core::CreateFault::None ? 1 : Fail(file);
}

std::int32_t WaveDataRead(WaveDataFile& file, void* buffer, std::int32_t byteCount) noexcept {
  const std::int64_t wanted = std::min<std::int64_t>(byteCount, SoundLeft(file));
  return wanted <= 0 ? 0 : file.mmioHandle.Read(buffer, static_cast<std::int32_t>(wanted));
}

void WaveDataCopy(WaveDataFile& source, WaveDataFile& destination, std::int64_t byteCount) noexcept {
  // A file may be shorter than its data chunk says; a read that ends before the file does is a fault.
  const std::int64_t inFile = source.mmioHandle.Length() - source.mmioHandle.Position();
  const std::int64_t wanted = std::min({byteCount, SoundLeft(source), inFile});
  if (wanted > 0 && destination.mmioHandle.CopyFrom(source.mmioHandle, wanted) != wanted) destination.failed = true;
}

void WaveDataWrite(WaveDataFile& file, const void* bytes, std::int32_t byteCount) noexcept {
  if (file.mmioHandle.Write(bytes, byteCount) != byteCount) file.failed = true;
}

void WaveDataSeek(WaveDataFile& file, std::int32_t offset, std::int32_t origin) noexcept {
  RiffFile& riff = file.mmioHandle;
  std::int64_t position = 0;
  if (origin == 0) {
    position = riff.Seek(std::int64_t{file.dataOffset} + offset, SeekFrom::Start);
  } else {
    position = riff.Seek(offset, origin == 1 ? SeekFrom::Current : SeekFrom::End);
  }
  if (position < 0) file.failed = true;
}

void WaveDataSeekTime(WaveDataFile& file, std::int32_t timeMs) noexcept {
  if (file.mmioHandle.Seek(TimeToSegmentOffset(file.format, timeMs), SeekFrom::Start) < 0) file.failed = true;
}

void WaveDataClose(WaveDataFile& file) noexcept {
  if (!file.mmioHandle.IsOpen()) return;
  // Each step is tried whatever became of the one before: a file without its last sizes is no wave file any more.
  if (!file.mmioHandle.Ascend(file.subChunk)) file.failed = true;
  if (!file.mmioHandle.Ascend(file.riffChunk)) file.failed = true;
  if (!file.mmioHandle.Close()) file.failed = true;
}

std::int32_t TimeToSegmentOffset(const core::PcmFormat& format, std::int32_t timeMs) noexcept {
  constexpr std::int32_t kHeaderAllowance = 64;
  return core::HoldToInt32(std::int64_t{core::TimeToEvenBytes(format, timeMs)} + kHeaderAllowance);
}

WaveInfo InfoOf(const WaveDataFile& file) noexcept {
  WaveInfo info;
  info.channels = file.format.channels;
  info.bitsPerSample = file.format.bitsPerSample;
  info.sampleRate = static_cast<std::int32_t>(file.format.sampleRate);
  info.dataLength = file.dataLength;
  const std::int32_t bitsPerSecond =
      core::WrappingMultiply(core::WrappingMultiply(info.channels, info.bitsPerSample), info.sampleRate);
  info.durationMs = core::BytesToTime(info.dataLength, bitsPerSecond / 8);
  return info;
}

std::int32_t ReadWaveFormat(const char* path, core::PcmFormat& format) noexcept {
  WaveDataFile file;
  if (!file.path.Assign(core::TextOf(path)) || WaveDataOpen(file) < 0) return -1;
  format = file.format;
  WaveDataClose(file);
  return 1;
}

std::int32_t ReadWaveInfo(const char* path, WaveInfo& info) noexcept {
  WaveDataFile file;
  if (!file.path.Assign(core::TextOf(path)) || WaveDataOpen(file) < 0) return -1;
  info = InfoOf(file);
  WaveDataClose(file);
  return 1;
}

}  // namespace tavimo::waveedit
