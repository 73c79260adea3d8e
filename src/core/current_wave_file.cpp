#include "core/current_wave_file.h"

#include <array>

#include "core/arithmetic.h"
#include "core/little_endian.h"

namespace tavimo::core {

using platform::SeekFrom;

void GotoFileEnd(CurrentWaveFile& file) noexcept {
  file.filePosition = WrappingAdd(file.dataOffset, file.dataLength);
  if (file.mmioHandle.IsOpen()) file.mmioHandle.Seek(file.filePosition, SeekFrom::Start);
}

void CloseThroughChunks(CurrentWaveFile& file) noexcept {
  if (!file.mmioHandle.IsOpen()) return;
  file.mmioHandle.Ascend(file.subChunk);
  file.mmioHandle.Ascend(file.riffChunk);
  file.mmioHandle.Close();
}

void CloseWithDataLength(CurrentWaveFile& file) noexcept {
  if (!file.mmioHandle.IsOpen()) return;
  std::array<std::uint8_t, 4> size{};
  WriteU32(size.data(), static_cast<std::uint32_t>(file.dataLength));
  if (file.mmioHandle.Seek(std::int64_t{file.dataOffset} - 4, SeekFrom::Start) >= 0) {
    file.mmioHandle.Write(size.data(), static_cast<std::int32_t>(size.size()));
  }
  file.mmioHandle.Close();
}

}  // namespace tavimo::core
