// Implements sound_library.h where the program is built without the libraries.
#include "refusal.h"
#include "sound_library.h"

namespace tavimo::host {

std::unique_ptr<SoundSource> OpenWithLibrary(const std::filesystem::path& /*file*/) {
  throw Refusal("this program decodes wave files alone (PCM or floating point); make one of it first");
}

bool WriteMp3(SoundSource& /*source*/, const std::filesystem::path& /*file*/,
              const std::function<void(std::int64_t)>& /*onProgress*/) {
  return false;
}

std::unique_ptr<Resampler> MakeResampler(int /*channels*/, int fromRate, int toRate, std::size_t /*pieceFrames*/) {
  throw Refusal("it has " + std::to_string(fromRate) + " samples a second, and this program cannot make " +
                std::to_string(toRate) + " of them; bring it to that rate first");
}

}  // namespace tavimo::host
