#include "web_sound.h"

#include <algorithm>

#include "page_data.h"
#include "progress_bar.h"
#include "refusal.h"
#include "sound_library.h"
#include "sound_source.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t kLargestPlainBytes = 24'000'000;  // nine minutes of a usual lesson
constexpr const char* kMp3File = "tmpwav/lesson.mp3";

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

// Empty where the library cannot write MP3, or not of this rate.
std::string Mp3Sound(const fs::path& recording) try {
  const Mp3File removedAtTheEnd;
  const std::unique_ptr<SoundSource> source = OpenSound(recording);
  const std::int64_t frameCount = std::max<std::int64_t>(source->FrameCount(), 1);
  ProgressBar progress(Readable(recording.filename()) + ", as MP3 for the page");
  const auto show = [&](std::int64_t done) { progress.Show(static_cast<int>(done * 100 / frameCount)); };
  if (!WriteMp3(*source, kMp3File, show)) return {};
  return DataUrl(FileBytes(kMp3File), "audio/mpeg");
} catch (const Refusal&) {
  return {};
}

}  // namespace

std::string WebSound(const fs::path& recording, const WaveHeader& header) {
  if (header.dataLength > kLargestPlainBytes) {
    if (std::string sound = Mp3Sound(recording); !sound.empty()) return sound;
  }
  return DataUrl(FileBytes(recording), "audio/wav");
}

}  // namespace tavimo::host
