// A recording as a browser plays it, for a page that carries it within.
#pragma once

#include <filesystem>
#include <string>

#include "wave_header.h"

namespace tavimo::host {

// A data URL: the wave file itself while it is small, MP3 when it is large and the decoding library can write it.
[[nodiscard]] std::string WebSound(const std::filesystem::path& recording, const WaveHeader& header);

}  // namespace tavimo::host
