// Whether a file is a wave file the engine plays: PCM of 8 or 16 bits. The data chunk is not looked for, and the channel
// count is not tested.
#pragma once

#include "core/pcm_format.h"
#include "platform/riff.h"

namespace tavimo::core {

// The records keep what was read also when a later step fails.
[[nodiscard]] bool IsPlayableWaveFile(const char* path, platform::ChunkInfo& riff, platform::ChunkInfo& sub,
                                      PcmFormat& format) noexcept;

}  // namespace tavimo::core
