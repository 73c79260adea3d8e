#include "sound_source.h"

#include "refusal.h"
#include "sound_library.h"
#include "wave_sound.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

void RefuseUnreadable(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (!fs::exists(status)) throw Refusal("there is no such file");
  if (fs::is_directory(status)) throw Refusal("it is a folder");
  if (!fs::is_regular_file(status)) throw Refusal("it is not a plain file");
}

}  // namespace

std::unique_ptr<SoundSource> OpenSound(const fs::path& file) {
  RefuseUnreadable(file);
  auto source = OpenWaveSound(file);
  if (!source) source = OpenWithLibrary(file);
  if (source->Channels() < 1 || source->SampleRate() < 1) throw Refusal("it holds no sound");
  return source;
}

}  // namespace tavimo::host
