#include "core/wave_check.h"

#include "core/wave_header.h"

namespace tavimo::core {

bool IsPlayableWaveFile(const char* path, platform::ChunkInfo& riff, platform::ChunkInfo& sub,
                        PcmFormat& format) noexcept {
  platform::RiffFile file = platform::RiffFile::Open(path, platform::OpenMode::Read);
  if (!file.IsOpen() || EnterFormat(file, riff, sub, format) != WaveFault::None) return false;
  return format.formatTag == kPcmFormatTag && (format.bitsPerSample == 8 || format.bitsPerSample == 16);
}

}  // namespace tavimo::core
