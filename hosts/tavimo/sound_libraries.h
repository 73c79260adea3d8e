// The decoding and the resampling library, loaded by the one command that needs them: with their codecs they are more than
// all the rest of the program. One list for each names the functions that are used.
#pragma once

#include <samplerate.h>
#include <sndfile.h>

namespace tavimo::host {

#define TAVIMO_DECODER_FUNCTIONS(FUNCTION) \
  FUNCTION(sf_open)                        \
  FUNCTION(sf_close)                       \
  FUNCTION(sf_error)                       \
  FUNCTION(sf_command)                     \
  FUNCTION(sf_readf_float)                 \
  FUNCTION(sf_writef_float)

#define TAVIMO_RESAMPLER_FUNCTIONS(FUNCTION) \
  FUNCTION(src_new)                          \
  FUNCTION(src_delete)                       \
  FUNCTION(src_process)                      \
  FUNCTION(src_strerror)

#define TAVIMO_POINTER(name) decltype(&::name) name = nullptr;  // NOLINT(bugprone-macro-parentheses): declares it
struct Decoder {
  TAVIMO_DECODER_FUNCTIONS(TAVIMO_POINTER)
};
struct ResamplerLibrary {
  TAVIMO_RESAMPLER_FUNCTIONS(TAVIMO_POINTER)
};
#undef TAVIMO_POINTER

// A Refusal that names the package when the library is missing.
[[nodiscard]] const Decoder& LoadedDecoder();
[[nodiscard]] const ResamplerLibrary& LoadedResampler();

}  // namespace tavimo::host
