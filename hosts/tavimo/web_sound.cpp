#include "web_sound.h"

#include <array>
#include <vector>

#include "page_data.h"
#include "progress_bar.h"
#include "refusal.h"
#include "sound_libraries.h"
#include "sound_source.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t kLargestPlainBytes = 24'000'000;  // nine minutes of a usual lesson
constexpr const char* kMp3File = "tmpwav/lesson.mp3";
constexpr double kKilobitsPerChannel = 64;
constexpr std::size_t kPieceFrames = 16384;

// Removes the file whichever way the conversion ends.
struct Mp3File {
  Mp3File() = default;
  Mp3File(const Mp3File&) = delete;
  Mp3File& operator=(const Mp3File&) = delete;
  ~Mp3File() {
    std::error_code ignored;
    fs::remove(kMp3File, ignored);
  }
};

// A browser finds its place in sound of a constant bit rate; in that of a variable one it plays seconds beside it. The
// library takes the rate as a share of the way from the highest to the lowest one for the sample rate.
bool UseConstantRate(const Decoder& library, SNDFILE* file, const SF_INFO& info) {
  const bool isLow = info.samplerate < 32000;
  const double highest = isLow ? 160 : 320;
  const double lowest = isLow ? 8 : 32;
  const double wanted = kKilobitsPerChannel * info.channels;
  double level = (highest - wanted) / (highest - lowest);
  int mode = SF_BITRATE_MODE_CONSTANT;
  return library.sf_command(file, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level) == SF_TRUE &&
         library.sf_command(file, SFC_SET_BITRATE_MODE, &mode, sizeof mode) == SF_TRUE;
}

bool WriteMp3(SoundSource& source, const WaveHeader& header, ProgressBar& progress) {
  const Decoder& library = LoadedDecoder();
  SF_INFO info{};
  info.samplerate = source.SampleRate();
  info.channels = source.Channels();
  info.format = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
  const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file(library.sf_open(kMp3File, SFM_WRITE, &info), library.sf_close);
  if (!file || !UseConstantRate(library, file.get(), info)) return false;
  std::vector<float> piece(kPieceFrames * static_cast<std::size_t>(source.Channels()));
  std::int64_t done = 0;
  while (const std::int64_t frames = source.Read(piece)) {
    StopIfInterrupted();
    if (library.sf_writef_float(file.get(), piece.data(), frames) != frames) return false;
    done += frames;
    progress.Show(static_cast<int>(done * 100 * source.Channels() * header.bitsPerSample / 8 /
                                   static_cast<std::int64_t>(header.dataLength)));
  }
  return true;
}

// Empty where the library cannot write MP3, or not of this rate.
std::string Mp3Sound(const fs::path& recording, const WaveHeader& header) try {
  const Mp3File removedAtTheEnd;
  SoundSource source(recording);
  ProgressBar progress(Readable(recording.filename()) + ", as MP3 for the page");
  if (!WriteMp3(source, header, progress)) return {};
  return DataUrl(FileBytes(kMp3File), "audio/mpeg");
} catch (const Refusal&) {
  return {};
}

}  // namespace

std::string WebSound(const fs::path& recording, const WaveHeader& header) {
  if (header.dataLength > kLargestPlainBytes) {
    if (std::string sound = Mp3Sound(recording, header); !sound.empty()) return sound;
  }
  return DataUrl(FileBytes(recording), "audio/wav");
}

}  // namespace tavimo::host
