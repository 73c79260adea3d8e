// Implements inputs.h: the folder and the sound. The texts are texts.cpp.
#include "inputs.h"

#include <stdlib.h>

#include <array>
#include <fstream>
#include <random>
#include <stdexcept>

#include "texts.h"

namespace tavimo::bench {

namespace fs = std::filesystem;

namespace {

constexpr int kSpeechRate = 22050;
constexpr int kSampleBytes = 2;
constexpr std::size_t kSpeechSeconds = 60;

constexpr std::array<const char*, 6> kSentences{"Good morning, everyone, and welcome to the first lesson.",
                                                "The train to the coast leaves at a quarter past nine.",
                                                "Would you like a cup of tea, or shall we go for a walk?",
                                                "No, it is not.",
                                                "She bought three apples and a loaf of bread at the market.",
                                                "When the rain had stopped, the children ran into the garden again."};

// Only what a 16-bit wave file of the speaker's own making holds.
std::vector<std::int16_t> ReadSamples(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  in.seekg(kWaveHeaderBytes);
  std::vector<std::int16_t> samples;
  for (std::array<char, 2> bytes{}; in.read(bytes.data(), bytes.size());) {
    samples.push_back(
        static_cast<std::int16_t>(static_cast<unsigned char>(bytes[0]) | static_cast<unsigned char>(bytes[1]) << 8));
  }
  return samples;
}

std::vector<std::int16_t> Speak(const char* sentence) {
  const std::string command = std::string("espeak-ng -v en-us -w spoken.wav \"") + sentence + "\"";
  if (std::system(command.c_str()) != 0) throw std::runtime_error("espeak-ng is needed to make the recordings");
  std::vector<std::int16_t> samples = ReadSamples("spoken.wav");
  fs::remove("spoken.wav");
  return samples;
}

void PutNumber(std::string& header, std::uint32_t value, int byteCount) {
  for (int i = 0; i < byteCount; ++i) header += static_cast<char>(value >> (8 * i) & 0xFF);
}

std::string WaveHeader(std::uint32_t soundBytes, int channels, int sampleRate) {
  const int frameBytes = channels * kSampleBytes;
  std::string header = "RIFF";
  PutNumber(header, soundBytes + 36, 4);
  header += "WAVEfmt ";
  PutNumber(header, 16, 4);
  PutNumber(header, 1, 2);
  PutNumber(header, static_cast<std::uint32_t>(channels), 2);
  PutNumber(header, static_cast<std::uint32_t>(sampleRate), 4);
  PutNumber(header, static_cast<std::uint32_t>(sampleRate * frameBytes), 4);
  PutNumber(header, static_cast<std::uint32_t>(frameBytes), 2);
  PutNumber(header, 8 * kSampleBytes, 2);
  header += "data";
  PutNumber(header, soundBytes, 4);
  return header;
}

}  // namespace

Inputs::Inputs(double share) : share_(share), previous_(fs::current_path()) {
  const fs::path memory = "/dev/shm";
  std::string pattern = ((fs::exists(memory) ? memory : fs::temp_directory_path()) / "tavimo-bench-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder can be made");
  folder_ = pattern;
  fs::current_path(folder_);
  for (const char* folder : {"temp", "tmpwav", "zud"}) fs::create_directory(folder);
}

Inputs::~Inputs() {
  std::error_code ignored;
  fs::current_path(previous_, ignored);
  fs::remove_all(folder_, ignored);
}

void Inputs::Make(Input input) {
  constexpr double kHourSeconds = 3600;
  constexpr double kTextBytes = 10e6;
  switch (input) {
    case Input::Hour:
      return MakeWave(kHour, kHourSeconds * share_, 1, kSpeechRate);
    case Input::StereoHour:
      return MakeWave(kStereoHour, kHourSeconds * share_, 2, 2 * kSpeechRate);
    case Input::Script:
      if (!fs::exists(kScript)) WriteScript(kScript, static_cast<std::int64_t>(kTextBytes * share_));
      return;
    case Input::Questions:
      if (!fs::exists(kQuestions)) {
        WriteQuestions(kQuestions, kQuestionStudy, static_cast<std::int64_t>(kTextBytes * share_));
      }
      return;
  }
}

void Inputs::MakeSpeech() {
  std::mt19937 random(1);
  while (speech_.size() < kSpeechSeconds * kSpeechRate) {
    const std::vector<std::int16_t> spoken = Speak(kSentences[random() % kSentences.size()]);
    speech_.insert(speech_.end(), spoken.begin(), spoken.end());
    const std::size_t pause = kSpeechRate * (400 + random() % 1200) / 1000;
    for (std::size_t i = 0; i < pause; ++i) speech_.push_back(static_cast<std::int16_t>(random() % 64 - 32));
  }
}

// Other rates come of leaving out or repeating samples; the second channel lags behind the first.
void Inputs::MakeWave(const char* name, double seconds, int channels, int sampleRate) {
  constexpr std::size_t kPieceBytes = 1 << 20;
  constexpr std::size_t kLag = 11;
  if (fs::exists(name)) return;
  if (speech_.empty()) MakeSpeech();
  const auto frameCount = static_cast<std::size_t>(seconds * sampleRate);
  const auto soundBytes = frameCount * static_cast<std::size_t>(channels * kSampleBytes);
  std::ofstream out(name, std::ios::binary);
  std::string piece = WaveHeader(static_cast<std::uint32_t>(soundBytes), channels, sampleRate);
  for (std::size_t frame = 0; frame < frameCount; ++frame) {
    const std::size_t at = frame * kSpeechRate / static_cast<std::size_t>(sampleRate);
    PutNumber(piece, static_cast<std::uint16_t>(speech_[at % speech_.size()]), kSampleBytes);
    if (channels == 2)
      PutNumber(piece, static_cast<std::uint16_t>(speech_[(at + kLag) % speech_.size()]), kSampleBytes);
    if (piece.size() < kPieceBytes && frame + 1 < frameCount) continue;
    out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
    piece.clear();
  }
  if (!out.flush()) throw std::runtime_error("the recordings do not fit the temporary folder");
}

}  // namespace tavimo::bench
