// The sound of wave files whose samples are plain numbers: PCM of 8 to 32 bits and floating point. It needs no library, so
// wave files are imported alike on every system. Files of other kinds are the library's (sound_library.h).
#pragma once

#include <filesystem>
#include <memory>

#include "sound_source.h"

namespace tavimo::host {

// Null when the file is no such wave file.
[[nodiscard]] std::unique_ptr<SoundSource> OpenWaveSound(const std::filesystem::path& file);

}  // namespace tavimo::host
