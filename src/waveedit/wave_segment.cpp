#include "waveedit/wave_segment.h"

#include <algorithm>

#include "waveedit/wave_data_file.h"

namespace tavimo::waveedit {

namespace {

void CopySound(WaveDataFile& source, WaveDataFile& destination, std::int64_t left, void* buffer,
               std::int32_t bufferBytes) noexcept {
  while (left > 0) {
    const std::int32_t got = WaveDataRead(source, buffer, bufferBytes);
    if (got <= 0) return;
    const std::int64_t wanted = std::min<std::int64_t>(got, left);
    WaveDataWrite(destination, buffer, static_cast<std::int32_t>(wanted));
    left -= wanted;
  }
}

}  // namespace

std::int32_t CopyWaveSegment(const char* sourcePath, const char* destinationPath, std::uint32_t startMs,
                             std::uint32_t endMs, void* buffer, std::int32_t bufferBytes) noexcept {
  WaveDataFile source;
  WaveDataFile destination;
  if (!source.path.Assign(core::TextOf(sourcePath)) || !destination.path.Assign(core::TextOf(destinationPath)) ||
      platform::IsSameFile(sourcePath, destinationPath) || WaveDataOpen(source) < 0) {
    return -1;
  }
  destination.format = source.format;
  if (WaveDataCreate(destination) < 0) {
    WaveDataClose(source);
    return -1;
  }
  WaveDataSeekTime(source, static_cast<std::int32_t>(startMs));
  // A start that has no place in the file lies past its end; nothing is copied from there.
  const std::int32_t length =
      source.failed ? 0 : TimeToSegmentOffset(source.format, static_cast<std::int32_t>(endMs - startMs + 1));
  if (buffer != nullptr) CopySound(source, destination, length, buffer, bufferBytes);
  WaveDataClose(source);
  WaveDataClose(destination);
  return 1;
}

}  // namespace tavimo::waveedit
