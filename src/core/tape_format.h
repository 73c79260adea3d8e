// The recording format: what new tapes and the capture device are opened in.
#pragma once

#include <cstdint>

#include "core/pcm_format.h"

namespace tavimo::core {

// The three integers and deviceFormat agree only after vcSetTapeFileFormat; whatever opens a tape or the capture device
// calls it first.
struct TapeFormat {
  std::int32_t sampleRate = 11025;
  std::int32_t bitsPerSample = 0;
  std::int32_t channels = 0;
  PcmFormat deviceFormat{kPcmFormatTag, 1, 22050, 22050, 1, 8};
  std::int32_t samplesPerLevel = 0;  // frames in one 40 ms level
};

}  // namespace tavimo::core
