// A learner's use of the engine, over and over, as fast as the machine can: a lesson of ten minutes is digested, cut, drawn,
// read and asked about, the learner speaks into it, cuts it and keeps what was said. Memory and open handles are compared
// between the end of the first rounds and the end of all: a program that runs all day must not grow.
//
//   tavimo_soak [MINUTES]           how long the machine is to work
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "support/scratch_folder.h"
#include "support/system.h"
#include "support/wave_bytes.h"
#include "tavimo.h"
#include "tavimo_host.h"

namespace tavimo::tests {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kBlock = 1256;
constexpr std::int32_t kRate = 11025;
constexpr int kLessonSeconds = 600;
constexpr int kSpokenSeconds = 300;
constexpr int kWarmUpRounds = 20;

[[noreturn]] void Fail(const std::string& reason) {
  std::printf("BROKEN: %s\n", reason.c_str());
  std::exit(1);
}

void Expect(bool isKept, const char* reason) {
  if (!isKept) Fail(reason);
}

// Six seconds of sound and two of silence by turns.
Bytes LessonSound() {
  Bytes sound(std::size_t{kRate} * kLessonSeconds);
  for (std::size_t i = 0; i < sound.size(); ++i) {
    sound[i] = i / kRate % 8 < 6 ? static_cast<std::uint8_t>(i * 7) : std::uint8_t{128};
  }
  return sound;
}

struct Usage {
  long residentKiB = 0;
  std::size_t handles = 0;
};

Usage CurrentUsage() {
  std::ifstream status("/proc/self/statm");
  long pages = 0;
  status >> pages >> pages;
  return {pages * (sysconf(_SC_PAGESIZE) / 1024), OpenHandleCount()};
}

class Learner {
 public:
  Learner();

  void Round();
  [[nodiscard]] double HoursLearned() const { return secondsLearned_ / 3600; }

 private:
  void Digest();
  void Cut();
  void Look() const;
  void Speak();
  void Edit();
  void Ask();
  void Read();
  void Keep();

  ScratchFolder scratch_;
  VcWindow window_ = tvCreateWindow(TV_WINDOW, nullptr, nullptr);
  VcWindow bar_ = tvCreateWindow(TV_PROGRESS_BAR, nullptr, nullptr);
  VcDc pane_ = tvCreateDc(600, 400);
  std::vector<std::uint32_t> starts_;
  double secondsLearned_ = 0;
};

Learner::Learner() {
  tvUseWaveInput("host");
  tvUseWaveOutput("host");
  tvSetBeepHandler([](void*) {}, nullptr);
  tvSetMessageBoxHandler([](const char* text, const char*, void*) { Fail(std::string("a message: ") + text); },
                         nullptr);
  Expect(tvSelectFont(pane_, "WenQuanYi Zen Hei", 16) == 0, "the font WenQuanYi Zen Hei is not installed");
  Expect(vcCanRun(0) == 1, "no other program of the family runs");
  vcSetMainWnd(window_);
  vcSetPlayFormWndProc(window_);
  vcSetWaveInAndOutWndProc(0, window_);
  vcSetRecordingVolumeBarHandle(bar_);
  std::filesystem::create_directory("kept");
  WriteBytes("kept/lesson.wav", WaveFile({1, 1, kRate, 8}, LessonSound()));
  WriteBytes("stereo.wav", WaveFile({1, 2, kRate, 8}, LessonSound()));
  std::string text;
  for (int i = 0; i < 400; ++i) text += "@@This is line " + std::to_string(i) + " of a script to read.\r\n";
  WriteText("lesson.txt", text);
}

void Learner::Digest() {
  Expect(vcStrongCopyFile(".\\", "lesson.wav", "kept\\") == 1, "the lesson is there again");
  Expect(vcIsWaveFile("lesson.wav") == 1, "the lesson is a wave file");
  Expect(vcMakeDigestFile("lesson.wav", "lesson.wav", "temp\\lesson.tmp") == 1, "the worker starts");
  while (vcGetMakeDigestPercentage() != 1000) std::this_thread::sleep_for(std::chrono::microseconds(200));
  Expect(vcIfDigestFileExist("lesson.wav") == 1, "the digest is current");
  Expect(vcOpenDigestFile("temp\\lesson.tmp") >= kLessonSeconds * 25, "the digest covers the lesson");
}

void Learner::Cut() {
  vcSetSilentParam(10, 800);
  const std::int32_t count = vcMakeSentence();
  Expect(count == kLessonSeconds / 8, "a sentence every eight seconds");
  starts_.resize(static_cast<std::size_t>(count));
  Expect(vcReadTmpIdx(starts_.data(), count) == 0, "the sentences are taken over");
  vcOpenSentenceFile("lesson.wav");
  for (std::uint32_t i = 1; i <= 10; ++i) vcAddBookMark(i * 10'000, "here");
  vcWriteExtraFileData("lesson.wav", starts_.data(), count);
  Expect(vcOpenSentenceFile("lesson.wav") == count, "the study file has them");
  vcReadSentenceData(starts_.data(), count);
  const VcWindow list = tvCreateWindow(TV_LIST_BOX, nullptr, nullptr);
  Expect(vcFillBookMarkList(list, kLessonSeconds * 1000) == 10, "ten bookmarks");
  tvDestroyWindow(list);
}

void Learner::Look() const {
  for (std::int32_t start = 0; start < kLessonSeconds * 1000; start += 20'000) {
    tvFill(pane_, 0, 0, 600, 400, 0xFFFFFF);
    vcDrawHalfDigestWave(pane_, 200, 600, start, 1);
    vcDrawSrcDigestWave(pane_, 200, 600, start, 2, 0);
  }
  vcCloseDigestFile();
}

void Learner::Speak() {
  vcWaveOutOpenPlayFile();
  Expect(vcNewTapeFile(kRate, 8, 1, "tmpwav\\tmpmic.wav") == 0, "a tape is made");
  Expect(vcWaveInOpenForTape(kRate, 8, 1) == 1, "the device opens");
  vcRecordTape();
  const Bytes block(kBlock, 100);
  for (int fed = 0; fed < kSpokenSeconds * kRate; fed += kBlock) {
    tvFeedWaveInput(block.data(), kBlock);
    tvDispatchMessages(0);
    if (fed / kBlock % 1000 == 0) {
      vcPauseRecording();
      tvDispatchMessages(0);
      vcRestartRecording();
    }
  }
  Expect(vcStopRecordTape() >= kSpokenSeconds * 1000, "all that was said is in the tape");
  vcWaveInCloseForTape();
  vcCloseWaveFile(3);
  vcWaveOutClose(1);
  Expect(vcSimpleMakeDigestFile(nullptr, "tmpwav\\tmpmic.wav", "tmpwav\\tmpmic.tmp", bar_) == 1, "it has a digest");
  vcDrawManVoiceDigestWave(pane_, 200, 600, 0, 2, 1);
  vcSetVisualWaveDataMan(0);
  vcDrawManWave(pane_, 200);
}

void Learner::Edit() {
  std::vector<char> buffer(65536);
  Expect(vcExtractWaveSeg("lesson.wav", "part.wav", 8000, 16'000, buffer.data(), 65536) == 1, "a sentence is copied");
  Expect(vcSteroToMono("stereo.wav", "mono.wav") == 0, "one channel is copied");
  std::vector<std::uint32_t> flags(starts_.size());
  for (std::size_t i = 0; i < flags.size(); i += 2) flags[i] = 1;
  Expect(vcDeleteSentenceInFile("lesson.wav", "zud\\lesson.zud", static_cast<std::int32_t>(flags.size()), flags.data(),
                                starts_.data(), bar_) == 0,
         "half of the sentences are deleted");
  const std::uint8_t record[20] = {1};
  Expect(vcWriteSoundFilePara("lesson.wav", "temp\\lesson.par", record) == 1, "parameters are kept");
  Expect(vcIfSoundParaFileExist("lesson.wav") == 1, "and are current");
}

void Learner::Ask() {
  const std::int32_t count = vcOpenSentenceFile("lesson.wav");
  std::string script;
  for (std::int32_t i = 0; i < count; ++i) script += "##N0T1\nWho?\n##XZ\nThis one.\nThat one.\n$$A\n";
  WriteText("lesson.scr", script);
  Expect(vcConvertScrToTstWz("zud\\lesson.zud", "lesson.scr") == 0, "questions compile");
  std::vector<std::int32_t> answers(static_cast<std::size_t>(count));
  char path[] = "temp\\lesson.tst";
  Expect(vcOpenQuestionIdx(path, answers.data()) == count, "a question for every sentence");
  Expect(vcOpenWzFile(path) == 0, "and its text");
  for (std::int32_t i = 0; i < count; ++i) {
    char text[100];
    vcReadCurQuestion(i, &answers[0]);
    Expect(vcGetQuestionTxt(text) > 0 && vcGetChoiceTxt(text) > 0, "a question has its texts");
  }
  vcCloseQuestionIdx();
  vcCloseWzFile();
}

void Learner::Read() {
  vcSetPageSettings(pane_, 580, 380, 10, 10, 1);
  Expect(vcGenPageFile(0, "lesson.txt", "lesson.pag", pane_) == -2, "the script has pages");
  const std::int32_t pages = vcOpenScript("lesson.txt", "lesson.pag", "lesson.mrk", nullptr);
  for (std::int32_t page = 0; page < pages; ++page) {
    vcReadPage(0, page);
    vcCountPage(pane_);
    vcDisplayPage(pane_);
    char word[161];
    std::int32_t state = 0;
    Expect(vcBeginSelect(pane_, 100, 20, &state, word) > 0, "a word is marked");
  }
  vcCloseScript();
}

void Learner::Keep() {
  Expect(vcSaveTapeFile("tmpwav\\tmpmic.wav", "take.wav") == 0, "what was said is kept");
  Expect(vcAppendTapeFile("take.wav") >= kSpokenSeconds * 1000, "and can be taken up again");
  vcCloseWaveFile(2);
  Expect(vcDeleteFile("take.wav") == 0, "and thrown away");
}

void Learner::Round() {
  Digest();
  Cut();
  Look();
  Speak();
  Edit();
  Ask();
  Read();
  Keep();
  secondsLearned_ += kLessonSeconds + kSpokenSeconds;
}

int Soak(double minutes) {
  constexpr long kMostGrowthKiB = 1024;
  Learner learner;
  for (int i = 0; i < kWarmUpRounds; ++i) learner.Round();
  const Usage before = CurrentUsage();
  const auto end = Clock::now() + std::chrono::duration<double, std::ratio<60>>(minutes);
  int rounds = kWarmUpRounds;
  for (; Clock::now() < end; ++rounds) learner.Round();
  const Usage after = CurrentUsage();
  std::printf("%d rounds, %.1f hours of a learner's time\n", rounds, learner.HoursLearned());
  std::printf("memory %ld KiB after %d rounds, %ld KiB at the end; handles %zu and %zu\n", before.residentKiB,
              kWarmUpRounds, after.residentKiB, before.handles, after.handles);
  Expect(after.residentKiB - before.residentKiB <= kMostGrowthKiB, "memory grows");
  Expect(after.handles == before.handles, "handles stay open");
  return 0;
}

}  // namespace
}  // namespace tavimo::tests

int main(int argumentCount, char** arguments) {
  char* end = nullptr;
  const double minutes = argumentCount > 1 ? std::strtod(arguments[1], &end) : 1;
  if ((end != nullptr && *end != '\0') || !(minutes > 0) || minutes > 10'000) {
    std::fprintf(stderr, "usage: tavimo_soak [MINUTES], a number above 0 and up to 10000\n");
    return 2;
  }
  return tavimo::tests::Soak(minutes);
}
