// The files the jobs read, made anew for each run from a fixed seed: speech from espeak-ng with pauses, tiled; a script
// of English and Chinese; a question script. They lie in a temporary folder, in memory where there is one, that goes
// away.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tavimo::bench {

enum class Input {
  Hour,        // hour.wav: one hour, 16 bits, mono, 22050 Hz
  StereoHour,  // stereo.wav: one hour, 16 bits, stereo, 44100 Hz
  Script,      // script.txt: 10 MB of GBK text, lines ended by CR LF
  Questions,   // questions.scr: 10 MB, about 60,000 records, and questions.zud, a study file of as many sentences
};

class Inputs {
 public:
  // Makes the folder, with temp, tmpwav and zud in it, the current directory. share is the part of the sizes above.
  explicit Inputs(double share);
  Inputs(const Inputs&) = delete;
  Inputs& operator=(const Inputs&) = delete;
  ~Inputs();

  // Nothing when it is there already.
  void Make(Input input);

  [[nodiscard]] const std::filesystem::path& Folder() const { return folder_; }

 private:
  void MakeSpeech();
  void MakeWave(const char* name, double seconds, int channels, int sampleRate);

  double share_;
  std::filesystem::path folder_;
  std::filesystem::path previous_;
  std::vector<std::int16_t> speech_;  // about a minute at 22050 Hz
};

inline constexpr const char* kHour = "hour.wav";
inline constexpr const char* kStereoHour = "stereo.wav";
inline constexpr const char* kScript = "script.txt";
inline constexpr const char* kQuestions = "questions.scr";
inline constexpr const char* kQuestionStudy = "questions.zud";
inline constexpr std::int64_t kWaveHeaderBytes = 44;

}  // namespace tavimo::bench
