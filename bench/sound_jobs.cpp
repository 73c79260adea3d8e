// Digest, cut, picture, stereo to mono, extraction and deletion.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>

#include "job.h"
#include "limits.h"
#include "tavimo.h"
#include "tavimo_host.h"

namespace tavimo::bench {

namespace {

constexpr const char* kDigest = "temp\\hour.tmp";
constexpr const char* kNativeDigest = "temp/hour.tmp";
constexpr std::int32_t kThreshold = 10;
constexpr std::int32_t kLevelMs = 40;

void MakeDigest(const char* wave) {
  Expect(vcSimpleMakeDigestFile(wave, wave, kDigest, nullptr) == 1, "vcSimpleMakeDigestFile");
}

void MakeDigestInWorker(const char* wave) {
  constexpr std::int32_t kDone = 1000;
  Expect(vcMakeDigestFile(wave, wave, kDigest) == 1, "vcMakeDigestFile");
  while (vcGetMakeDigestPercentage() != kDone) std::this_thread::sleep_for(std::chrono::milliseconds(2));
}

void OpenDigest() { Expect(vcOpenDigestFile(kDigest) > 0, "vcOpenDigestFile"); }

std::int32_t Cut(std::int32_t silenceLevels) {
  vcSetSilentParam(kThreshold, silenceLevels * kLevelMs);
  return vcMakeSentence();
}

Contest ReadingContest(const char* wave, Work job) {
  return {std::move(job), [wave] { benchmark::DoNotOptimize(ReadOnce(wave)); }, LengthOf(wave), {}};
}

// A host that polls waits longer than a small digest takes: its growth tells nothing.
Job DigestJob(const char* name, const char* what, Input input, const char* wave, void (*make)(const char*)) {
  return {.name = name,
          .what = what,
          .inputs = {input},
          .growth = make == &MakeDigest ? Growth::Proportional : Growth::None,
          .mostTimes = 1.25,
          .measure = [=](const Inputs&) { return MeasureBulk(ReadingContest(wave, [=] { make(wave); })); }};
}

Measurement MeasureDigestAndCut(const Inputs&) {
  return MeasureBulk(ReadingContest(kHour, [] {
    MakeDigest(kHour);
    OpenDigest();
    Expect(Cut(7) > 1, "vcMakeSentence");
    vcCloseDigestFile();
  }));
}

std::vector<std::uint8_t> LevelsOfDigest() {
  std::vector<std::uint8_t> levels(static_cast<std::size_t>(LengthOf(kNativeDigest)));
  ReadInto(kNativeDigest, levels);
  return levels;
}

// Beside one pass over the digest.
Measurement MeasureCut(std::int32_t silenceLevels) {
  OpenDigest();
  std::vector<std::uint8_t> levels = LevelsOfDigest();
  Expect(Cut(silenceLevels) > 1, "vcMakeSentence");
  Contest contest{[=] { Cut(silenceLevels); },
                  [&] {
                    ReadInto(kNativeDigest, levels);
                    benchmark::DoNotOptimize(CountSounds(levels, kThreshold));
                  },
                  std::ssize(levels),
                  {}};
  return MeasureSmall(contest);
}

double SecondsOfCuts(std::int32_t silenceLevels) {
  return SecondsOf([=] {
    for (int i = 0; i < 50; ++i) Cut(silenceLevels);
  });
}

// A pause of 44 s four times in the digest, so that both silences end sentences and are written to the same file.
void MakeDigestWithLongPauses() {
  constexpr std::size_t kPauses = 4;
  constexpr std::size_t kPauseLevels = 1100;
  MakeDigest(kHour);
  std::vector<std::uint8_t> levels = LevelsOfDigest();
  const std::size_t distance = levels.size() / kPauses;
  Expect(distance > 2 * kPauseLevels, "a digest of so few levels has no room for long pauses");
  for (std::size_t i = 0; i < kPauses; ++i) std::fill_n(levels.begin() + std::ptrdiff_t(i * distance), kPauseLevels, 0);
  std::ofstream(kNativeDigest, std::ios::binary)
      .write(reinterpret_cast<const char*>(levels.data()), std::ssize(levels));
}

Measurement MeasureLongSilence(const Inputs&) {
  constexpr int kRounds = 15;
  constexpr std::int32_t kShort = 7;
  constexpr std::int32_t kLong = 1000;
  MakeDigestWithLongPauses();
  Measurement result = MeasureCut(kLong);
  std::vector<double> times;
  for (int i = 0; i < kRounds; ++i) times.push_back(SecondsOfCuts(kLong) / SecondsOfCuts(kShort));
  result.slowerThanSibling = Median(times);
  return result;
}

using DrawWave = void (*)(VcDc dc, std::int32_t height, std::int32_t width, std::int32_t levels);

Measurement MeasurePicture(DrawWave draw) {
  constexpr std::int32_t kWidth = 1024;
  constexpr std::int32_t kHeight = 200;
  MakeDigest(kHour);
  OpenDigest();
  std::vector<std::uint8_t> levels = LevelsOfDigest();
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(kWidth * kHeight));
  const auto perColumn = static_cast<std::int32_t>(levels.size() / kWidth);
  Expect(perColumn > 0, "a digest of so few levels fills no picture");
  const VcDc dc = tvCreateDc(kWidth, kHeight);
  Contest contest{[=] { draw(dc, kHeight, kWidth, perColumn); },
                  [&] {
                    ReadInto(kNativeDigest, levels);
                    FillColumns(levels, static_cast<std::size_t>(perColumn), kWidth, kHeight, pixels.data());
                    benchmark::ClobberMemory();
                  },
                  std::ssize(levels),
                  {}};
  return MeasureSmall(contest);
}

void DrawHalf(VcDc dc, std::int32_t height, std::int32_t width, std::int32_t levels) {
  vcDrawHalfDigestWave(dc, height, width, 0, levels);
}

void DrawFull(VcDc dc, std::int32_t height, std::int32_t width, std::int32_t levels) {
  vcDrawSrcDigestWave(dc, height, width, 0, 2 * levels, 0);
}

Job PictureJob(const char* name, const char* what, DrawWave draw) {
  return {.name = name,
          .what = what,
          .inputs = {Input::Hour},
          .mostTimes = 3,
          .mostSeconds = 0.002,
          .measure = [=](const Inputs&) { return MeasurePicture(draw); }};
}

void RemoveOutputs() {
  for (const char* file : {"out.wav", "limit.wav"}) std::remove(file);
}

Measurement MeasureMono(const Inputs&) {
  return MeasureBulk({[] { Expect(vcSteroToMono(kStereoHour, "out.wav") == 0, "vcSteroToMono"); },
                      [] { KeepEverySecondSample(kStereoHour, "limit.wav"); }, LengthOf(kStereoHour), RemoveOutputs});
}

Measurement MeasureExtract(const Inputs&) {
  const std::int64_t length = LengthOf(kHour);
  const auto halfMs = static_cast<std::uint32_t>(length / 2 * 1000 / 44100);
  static std::vector<char> buffer(64 * 1024);
  const auto extract = [=] {
    Expect(vcExtractWaveSeg(kHour, "out.wav", halfMs / 2, halfMs / 2 + halfMs, buffer.data(),
                            static_cast<std::int32_t>(buffer.size())) == 1,
           "vcExtractWaveSeg");
  };
  const auto copy = [=] { CopyRanges(kHour, "limit.wav", {{length / 4, length / 2}}); };
  return MeasureBulk({extract, copy, length / 2, RemoveOutputs});
}

std::vector<std::uint32_t> StartsOfHour() {
  MakeDigest(kHour);
  OpenDigest();
  std::vector<std::uint32_t> starts(static_cast<std::size_t>(Cut(7)));
  Expect(starts.size() > 1 && vcReadTmpIdx(starts.data(), static_cast<std::int32_t>(starts.size())) == 0,
         "vcReadTmpIdx");
  vcCloseDigestFile();
  return starts;
}

// The first sentence stays, the second goes, and so on. The limit's copy takes the recording's place too: whoever
// replaces a file waits for the system to give the old one's room back.
Measurement MeasureDelete(const Inputs&) {
  constexpr std::int64_t kBytesPerMs10 = 441;  // 44.1 bytes a millisecond
  constexpr const char* kRecording = "edited.wav";
  const std::vector<std::uint32_t> starts = StartsOfHour();
  const std::int64_t length = LengthOf(kHour);
  std::vector<std::uint32_t> flags(starts.size());
  std::vector<ByteRange> kept{{0, kWaveHeaderBytes + starts[0] * kBytesPerMs10 / 10}};
  std::int64_t keptBytes = kept[0].second;
  for (std::size_t i = 0; i < starts.size(); ++i) {
    flags[i] = i % 2;
    const std::int64_t begin = kWaveHeaderBytes + starts[i] * kBytesPerMs10 / 10;
    const std::int64_t end = i + 1 < starts.size() ? kWaveHeaderBytes + starts[i + 1] * kBytesPerMs10 / 10 : length;
    if (flags[i] == 0) kept.emplace_back(begin, end - begin);
    if (flags[i] == 0) keptBytes += end - begin;
  }
  std::vector<std::uint32_t> edited;
  const auto prepare = [&] {
    RemoveOutputs();
    std::filesystem::copy_file(kHour, kRecording, std::filesystem::copy_options::overwrite_existing);
    edited = starts;
  };
  const auto remove = [&] {
    Expect(vcDeleteSentenceInFile(kRecording, "zud\\edited.zud", static_cast<std::int32_t>(starts.size()), flags.data(),
                                  edited.data(), nullptr) == 0,
           "vcDeleteSentenceInFile");
  };
  const auto copy = [&] { CopyRanges(kRecording, "limit.wav", kept); };
  return MeasureBulk({remove, copy, keptBytes, prepare});
}

}  // namespace

std::vector<Job> SoundJobs() {
  return {
      DigestJob("digest-hour", "digest of an hour, at once", Input::Hour, kHour, MakeDigest),
      DigestJob("digest-hour-worker", "digest of an hour, by polling", Input::Hour, kHour, MakeDigestInWorker),
      DigestJob("digest-stereo", "digest of a stereo hour, at once", Input::StereoHour, kStereoHour, MakeDigest),
      DigestJob("digest-stereo-worker", "digest of a stereo hour, by polling", Input::StereoHour, kStereoHour,
                MakeDigestInWorker),
      {.name = "digest-cut",
       .what = "digest and cut of an hour",
       .inputs = {Input::Hour},
       .growth = Growth::Proportional,
       .mostTimes = 1.35,
       .measure = MeasureDigestAndCut},
      {.name = "cut",
       .what = "cut of an hour's digest, silence of 7 levels",
       .inputs = {Input::Hour},
       .mostTimes = 4,
       .measure =
           [](const Inputs&) {
             MakeDigest(kHour);
             return MeasureCut(7);
           }},
      {.name = "cut-long-silence",
       .what = "the same, silence of 1000 levels",
       .inputs = {Input::Hour},
       .mostTimes = 4,
       .mostTimesSibling = 1.05,
       .measure = MeasureLongSilence},
      PictureJob("picture-half", "half-wave picture of an hour", DrawHalf),
      PictureJob("picture-full", "full-wave picture of an hour", DrawFull),
      {.name = "mono",
       .what = "stereo to mono of an hour",
       .inputs = {Input::StereoHour},
       .growth = Growth::Proportional,
       .mostTimes = 1.25,
       .measure = MeasureMono},
      {.name = "extract",
       .what = "30 minutes of an hour, 64 KiB buffer",
       .inputs = {Input::Hour},
       .growth = Growth::Proportional,
       .mostTimes = 1.25,
       .measure = MeasureExtract},
      {.name = "delete",
       .what = "every second sentence out of an hour",
       .inputs = {Input::Hour},
       .growth = Growth::Proportional,
       .mostTimes = 1.5,
       .measure = MeasureDelete},
  };
}

}  // namespace tavimo::bench
