#include "importer.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "progress_bar.h"
#include "recording_writer.h"
#include "refusal.h"
#include "sound_library.h"
#include "sound_source.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace {

constexpr std::size_t kPieceFrames = 8192;
constexpr std::string_view kImportedEnding = "-16bit";

// Rates between the bounds stay; beyond them the nearest of the same family, which resamples best.
int RateFor(int sourceRate) {
  if (sourceRate < kLowestImportRate) return kLowestImportRate;
  if (sourceRate <= kHighestImportRate) return sourceRate;
  return sourceRate % 11025 == 0 ? 44100 : kHighestImportRate;
}

int ChannelsFor(int sourceChannels) { return sourceChannels <= 2 ? sourceChannels : 1; }

// One channel is the mean of all; two out of one are the same; two out of more have the mean on both, as which of them
// is left or right differs between formats.
void Mix(std::span<const float> from, int fromChannels, std::vector<float>& to, int toChannels) {
  const auto sources = static_cast<std::size_t>(fromChannels);
  const auto targets = static_cast<std::size_t>(toChannels);
  const std::size_t frames = from.size() / sources;
  to.resize(frames * targets);
  for (std::size_t frame = 0; frame < frames; ++frame) {
    float sum = 0;
    for (std::size_t i = 0; i < sources; ++i) sum += from[frame * sources + i];
    std::fill_n(to.begin() + static_cast<std::ptrdiff_t>(frame * targets), targets, sum / static_cast<float>(sources));
  }
}

int PercentOf(std::int64_t done, std::int64_t all) { return all > 0 ? static_cast<int>(done * 100 / all) : 0; }

class Conversion {
 public:
  explicit Conversion(const ImportRequest& request)
      : source_(OpenSound(request.source)),
        rate_(request.sampleRate.value_or(RateFor(source_->SampleRate()))),
        channels_(request.channels.value_or(ChannelsFor(source_->Channels()))),
        writer_(request.recording, rate_, channels_, RoundingFor()),
        progress_(Readable(request.source.filename())) {
    if (rate_ != source_->SampleRate())
      resampler_ = MakeResampler(channels_, source_->SampleRate(), rate_, kPieceFrames);
  }

  Imported Run() {
    std::int64_t done = 0;
    std::vector<float> piece = ReadPiece();
    while (!piece.empty()) {
      StopIfInterrupted();
      std::vector<float> next = ReadPiece();
      Take(piece, next.empty() ? Piece::Last : Piece::More);
      done += static_cast<std::int64_t>(piece.size()) / source_->Channels();
      progress_.Show(PercentOf(done, source_->FrameCount()));
      piece = std::move(next);
    }
    writer_.Finish();
    return {static_cast<std::int64_t>(writer_.FrameCount()) * 1000 / rate_,
            !source_->IsDamaged() && done + CountSlack() >= source_->FrameCount(),
            source_->FrameCount() * 1000 / source_->SampleRate()};
  }

 private:
  [[nodiscard]] Rounding RoundingFor() const {
    const bool isSame =
        rate_ == source_->SampleRate() && (channels_ == source_->Channels() || source_->Channels() == 1);
    return isSame && source_->IsSixteenBits() ? Rounding::Exact : Rounding::Dithered;
  }

  // How far the count may be off. In an MP3 file it may be a guess from the file's size and the first frames' rate.
  [[nodiscard]] std::int64_t CountSlack() const {
    const std::int64_t fixed = source_->SampleRate() / 5;
    return source_->IsCountEstimated() ? std::max(fixed, source_->FrameCount() / 100) : fixed;
  }

  // Whole frames; none at the end.
  std::vector<float> ReadPiece() {
    std::vector<float> piece(kPieceFrames * static_cast<std::size_t>(source_->Channels()));
    piece.resize(static_cast<std::size_t>(source_->Read(piece) * source_->Channels()));
    return piece;
  }

  void Take(std::span<const float> samples, Piece piece) {
    if (channels_ != source_->Channels()) {
      Mix(samples, source_->Channels(), mixed_, channels_);
      samples = mixed_;
    }
    if (resampler_) {
      resampler_->Process(samples, piece, writer_);
    } else {
      writer_.Write(samples);
    }
  }

  std::unique_ptr<SoundSource> source_;
  int rate_;
  int channels_;
  RecordingWriter writer_;
  ProgressBar progress_;
  std::unique_ptr<Resampler> resampler_;
  std::vector<float> mixed_;
};

}  // namespace

std::filesystem::path RecordingFor(const std::filesystem::path& source) {
  const std::filesystem::path beside = std::filesystem::path(source).replace_extension(".wav");
  if (beside.filename() != source.filename()) return beside;
  return source.parent_path() / PathFromUtf8(Utf8(source.stem()).append(kImportedEnding).append(".wav"));
}

std::string SourceStem(const std::filesystem::path& recording) {
  const std::string stem = Utf8(recording.stem());
  return stem.ends_with(kImportedEnding) ? stem.substr(0, stem.size() - kImportedEnding.size()) : stem;
}

Imported Import(const ImportRequest& request) {
  CheckOutput(request.source, request.recording, request.existing);
  return Conversion(request).Run();
}

}  // namespace tavimo::host
