#include "sound_libraries.h"

#include "refusal.h"
#include "system.h"

namespace tavimo::host {

namespace {

template <typename Function>
void LookUp(Function& function, const char* library, const char* name) {
  function = reinterpret_cast<Function>(FindInLibrary(library, name));
  if (function == nullptr) {
    throw Refusal(std::string("importing needs the library ") + library + ", which cannot be loaded");
  }
}

Decoder LoadDecoder() {
  Decoder decoder;
#define TAVIMO_LOOK_UP(name) LookUp(decoder.name, "libsndfile.so.1", #name);
  TAVIMO_DECODER_FUNCTIONS(TAVIMO_LOOK_UP)
#undef TAVIMO_LOOK_UP
  return decoder;
}

ResamplerLibrary LoadResampler() {
  ResamplerLibrary resampler;
#define TAVIMO_LOOK_UP(name) LookUp(resampler.name, "libsamplerate.so.0", #name);
  TAVIMO_RESAMPLER_FUNCTIONS(TAVIMO_LOOK_UP)
#undef TAVIMO_LOOK_UP
  return resampler;
}

}  // namespace

const Decoder& LoadedDecoder() {
  static const Decoder decoder = LoadDecoder();
  return decoder;
}

const ResamplerLibrary& LoadedResampler() {
  static const ResamplerLibrary resampler = LoadResampler();
  return resampler;
}

}  // namespace tavimo::host
