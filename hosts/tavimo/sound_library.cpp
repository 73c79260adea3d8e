// Implements sound_library.h over the libraries of the system, loaded by the one command that needs them: with their codecs
// they are more than all the rest of the program. One list for each names the functions that are used.
#include "sound_library.h"

#include <samplerate.h>
#include <sndfile.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "library_calls.h"
#include "refusal.h"
#include "system.h"

namespace tavimo::host {

namespace {

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

// A Refusal that names the library when it is missing.
template <typename Function>
void LookUp(Function& function, const char* library, const char* name) {
  function = reinterpret_cast<Function>(FindInLibrary(library, name));
  if (function == nullptr) {
    throw Refusal(std::string("importing needs the library ") + library + ", which cannot be loaded");
  }
}

const Decoder& LoadedDecoder() {
  static const Decoder decoder = [] {
    Decoder loaded;
#define TAVIMO_LOOK_UP(name) LookUp(loaded.name, "libsndfile.so.1", #name);
    TAVIMO_DECODER_FUNCTIONS(TAVIMO_LOOK_UP)
#undef TAVIMO_LOOK_UP
    return loaded;
  }();
  return decoder;
}

const ResamplerLibrary& LoadedResampler() {
  static const ResamplerLibrary resampler = [] {
    ResamplerLibrary loaded;
#define TAVIMO_LOOK_UP(name) LookUp(loaded.name, "libsamplerate.so.0", #name);
    TAVIMO_RESAMPLER_FUNCTIONS(TAVIMO_LOOK_UP)
#undef TAVIMO_LOOK_UP
    return loaded;
  }();
  return resampler;
}

using SoundFile = std::unique_ptr<SNDFILE, int (*)(SNDFILE*)>;

class LibrarySound : public SoundSource {
 public:
  explicit LibrarySound(const std::filesystem::path& file)
      : library_(LoadedDecoder()), file_(nullptr, library_.sf_close) {
    const QuietErrors quiet;
    file_.reset(library_.sf_open(file.c_str(), SFM_READ, &info_));
    if (!file_) throw Refusal("it is no sound that can be decoded; MP3, Ogg, Opus, FLAC, AIFF and wave files can");
  }

  [[nodiscard]] int SampleRate() const override { return info_.samplerate; }
  [[nodiscard]] int Channels() const override { return info_.channels; }
  // No file that lies about its length leads past the end of a number once it is counted in milliseconds.
  [[nodiscard]] std::int64_t FrameCount() const override {
    constexpr std::int64_t kMostFrames = std::numeric_limits<std::int64_t>::max() / 1000;
    return std::clamp<std::int64_t>(info_.frames, 0, kMostFrames);
  }
  [[nodiscard]] bool IsCountEstimated() const override { return (info_.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG; }
  [[nodiscard]] bool IsSixteenBits() const override {
    const int kind = info_.format & SF_FORMAT_SUBMASK;
    return kind == SF_FORMAT_PCM_16 || kind == SF_FORMAT_PCM_S8 || kind == SF_FORMAT_PCM_U8;
  }
  [[nodiscard]] bool IsDamaged() const override { return library_.sf_error(file_.get()) != 0; }

  std::int64_t Read(std::span<float> samples) override {
    const auto room = static_cast<sf_count_t>(samples.size() / static_cast<std::size_t>(info_.channels));
    const QuietErrors quiet;
    return library_.sf_readf_float(file_.get(), samples.data(), room);
  }

 private:
  const Decoder& library_;
  SF_INFO info_{};
  SoundFile file_;
};

// A browser finds its place in sound of a constant bit rate; in that of a variable one it plays seconds beside it. The
// library takes the rate as a share of the way from the highest to the lowest one for the sample rate.
bool UseConstantRate(const Decoder& library, SNDFILE* file, const SF_INFO& info) {
  constexpr double kKilobitsPerChannel = 64;
  const bool isLow = info.samplerate < 32000;
  const double highest = isLow ? 160 : 320;
  const double lowest = isLow ? 8 : 32;
  const double wanted = kKilobitsPerChannel * info.channels;
  double level = (highest - wanted) / (highest - lowest);
  int mode = SF_BITRATE_MODE_CONSTANT;
  return library.sf_command(file, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level) == SF_TRUE &&
         library.sf_command(file, SFC_SET_BITRATE_MODE, &mode, sizeof mode) == SF_TRUE;
}

class LibraryResampler : public Resampler {
 public:
  LibraryResampler(int channels, double ratio, std::size_t pieceFrames)
      : library_(LoadedResampler()), state_(nullptr, library_.src_delete), channels_(channels) {
    int error = 0;
    state_.reset(library_.src_new(SRC_SINC_MEDIUM_QUALITY, channels, &error));
    if (!state_) Refuse(error);
    data_.src_ratio = ratio;
    const double frames = std::max(1.0, ratio) * static_cast<double>(pieceFrames);
    output_.resize((static_cast<std::size_t>(frames) + 1) * static_cast<std::size_t>(channels));
  }

  void Process(std::span<const float> samples, Piece piece, RecordingWriter& writer) override {
    data_.data_in = samples.data();
    data_.input_frames = static_cast<long>(samples.size()) / channels_;
    data_.end_of_input = piece == Piece::Last ? 1 : 0;
    data_.data_out = output_.data();
    data_.output_frames = static_cast<long>(output_.size()) / channels_;
    do {
      if (const int error = library_.src_process(state_.get(), &data_); error != 0) Refuse(error);
      writer.Write(std::span(output_).first(static_cast<std::size_t>(data_.output_frames_gen * channels_)));
      data_.data_in += data_.input_frames_used * channels_;
      data_.input_frames -= data_.input_frames_used;
    } while (data_.input_frames > 0 || data_.output_frames_gen > 0);
  }

 private:
  [[noreturn]] void Refuse(int error) const {
    throw Refusal(std::string("it cannot be resampled (") + library_.src_strerror(error) + ")");
  }

  const ResamplerLibrary& library_;
  std::unique_ptr<SRC_STATE, SRC_STATE* (*)(SRC_STATE*)> state_;
  int channels_;
  SRC_DATA data_{};
  std::vector<float> output_;
};

}  // namespace

std::unique_ptr<SoundSource> OpenWithLibrary(const std::filesystem::path& file) {
  return std::make_unique<LibrarySound>(file);
}

bool WriteMp3(SoundSource& source, const std::filesystem::path& file,
              const std::function<void(std::int64_t)>& onProgress) {
  constexpr std::size_t kPieceFrames = 16384;
  const Decoder& library = LoadedDecoder();
  SF_INFO info{};
  info.samplerate = source.SampleRate();
  info.channels = source.Channels();
  info.format = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
  const SoundFile mp3(library.sf_open(file.c_str(), SFM_WRITE, &info), library.sf_close);
  if (!mp3 || !UseConstantRate(library, mp3.get(), info)) return false;
  std::vector<float> piece(kPieceFrames * static_cast<std::size_t>(source.Channels()));
  std::int64_t done = 0;
  while (const std::int64_t frames = source.Read(piece)) {
    StopIfInterrupted();
    if (library.sf_writef_float(mp3.get(), piece.data(), frames) != frames) return false;
    done += frames;
    onProgress(done);
  }
  return true;
}

std::unique_ptr<Resampler> MakeResampler(int channels, int fromRate, int toRate, std::size_t pieceFrames) {
  return std::make_unique<LibraryResampler>(channels, static_cast<double>(toRate) / fromRate, pieceFrames);
}

}  // namespace tavimo::host
