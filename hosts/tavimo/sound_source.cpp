#include "sound_source.h"

#include "refusal.h"
#include "sound_libraries.h"
#include "system.h"

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

SoundSource::SoundSource(const fs::path& file) : file_(nullptr, LoadedDecoder().sf_close) {
  RefuseUnreadable(file);
  const Decoder& decoder = LoadedDecoder();
  const QuietErrors quiet;
  file_.reset(decoder.sf_open(file.c_str(), SFM_READ, &info_));
  if (!file_) throw Refusal("it is no sound that can be decoded; MP3, Ogg, Opus, FLAC, AIFF and wave files can");
  if (info_.channels < 1 || info_.samplerate < 1) throw Refusal("it holds no sound");
}

bool SoundSource::IsSixteenBits() const {
  const int kind = info_.format & SF_FORMAT_SUBMASK;
  return kind == SF_FORMAT_PCM_16 || kind == SF_FORMAT_PCM_S8 || kind == SF_FORMAT_PCM_U8;
}

bool SoundSource::IsDamaged() const { return LoadedDecoder().sf_error(file_.get()) != 0; }

std::int64_t SoundSource::Read(std::span<float> samples) {
  const auto room = static_cast<sf_count_t>(samples.size() / static_cast<std::size_t>(info_.channels));
  const QuietErrors quiet;
  return LoadedDecoder().sf_readf_float(file_.get(), samples.data(), room);
}

}  // namespace tavimo::host
