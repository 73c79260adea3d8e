// Every file operation of every export that touches files fails in turn, once alone and once with all that follow, and every
// read ends early in turn. Afterwards each file is the old one or the new one, the result tells which, no handle is left open,
// and no other file lies about.
#include <algorithm>
#include <chrono>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>

#include "platform/file_faults.h"
#include "platform/files.h"
#include "support/engine_test.h"
#include "support/lesson_files.h"
#include "support/message_boxes.h"
#include "support/system.h"

namespace tavimo::tests {
namespace {

using platform::FaultExtent;
using platform::FaultPlan;
using platform::FileFault;
using Files = std::map<std::string, Bytes>;

constexpr std::int32_t kQuiet = -100;  // the host is not told
constexpr std::uint32_t kStarts[] = {0, 2000, 4000};
constexpr std::uint32_t kSecondGoes[] = {0, 1, 0};
constexpr char kRecord[] = "09876543210987654321";

// One row for each export with its own way of touching files.
struct Case {
  const char* what;
  std::int32_t (*work)();
  std::int32_t refused;  // the result that promises that nothing changed; any other one promises that all is done
  // Files that the header excuses after a failure, marked before their names: "!" they may be incomplete; "?" gone, or the old
  // ones; "~" shorter, when what they are made from seemed to end early.
  std::string_view exempt;
};

std::int32_t WaitForWorker() {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while ((digest::State().digestJob.percentage.load() & digest::kWorkerRuns) != 0) {
    if (std::chrono::steady_clock::now() > end) return -1;
    std::this_thread::yield();
  }
  return kQuiet;
}

std::int32_t Record(std::int32_t opened) {
  if (opened < 0) return -1;
  const Window window;
  tvUseWaveInput("host");
  vcSetWaveInAndOutWndProc(0, window);
  vcGotoFileEnd();
  vcWaveInOpenForTape(1000, 8, 1);
  vcRecordTape();
  const Bytes sound(2512, 0x55);
  tvFeedWaveInput(sound.data(), 2512);
  tvDispatchMessages(0);
  vcWaveInCloseForTape();
  vcCloseWaveFile(opened == 0 ? 3 : 2);
  tvUseWaveInput(nullptr);
  return 0;
}

std::int32_t Delete(const char* recording, const char* study) {
  std::uint32_t starts[3];
  std::copy(std::begin(kStarts), std::end(kStarts), starts);
  const std::int32_t result = vcDeleteSentenceInFile(recording, study, 3, kSecondGoes, starts, nullptr);
  EXPECT_TRUE(result != -1 || std::equal(std::begin(kStarts), std::end(kStarts), starts)) << "the table stays";
  return result;
}

std::int32_t ReadBank() {
  std::int32_t answers[2];
  char path[] = "temp\\a.tst";
  const std::int32_t count = vcOpenQuestionIdx(path, answers);
  vcOpenWzFile(path);
  char text[64];
  for (std::int32_t i = 0; i < 2; ++i) {
    vcReadCurQuestion(i, &answers[0]);
    vcGetQuestionTxt(text);
    vcGetChoiceTxt(text);
    vcGetArticleTxt(text, i);
  }
  vcFillSentenceList(nullptr);
  return count;
}

std::int32_t ReadStudyFile() {
  std::uint32_t starts[2];
  const std::int32_t count = vcOpenSentenceFile("a.wav");
  vcGetSentence(80, &starts[0], &starts[1]);
  return vcReadSentenceData(starts, count);
}

std::int32_t MakeSentences() {
  vcOpenDigestFile("temp\\a.tmp");
  vcSetSilentParam(10, 80);
  return vcMakeSentence();
}

constexpr Case kCases[] = {
    {"a wave file is examined", [] { return vcIsWaveFile("a.wav"); }, 0, ""},
    {"a tape is recorded", [] { return Record(vcNewTapeFile(1000, 8, 1, "tmpwav\\tmpmic.wav")); }, -1,
     "!tmpwav/tmpmic.wav"},
    {"a recording goes on", [] { return Record(vcAppendTapeFile("a.wav")); }, -1, "!a.wav"},
    {"a tape is kept", [] { return vcSaveTapeFile("tmpwav\\tmpmic.wav", "b.wav"); }, -1, ""},
    {"a tape is kept over another", [] { return vcSaveTapeFile("tmpwav\\tmpmic.wav", "stereo.wav"); }, -1, ""},
    {"a digest is taken over", [] { return vcIfDigestFileExist("a.wav"), kQuiet; }, -1, ""},
    {"a digest is made", [] { return vcSimpleMakeDigestFile("a.wav", "stereo.wav", "temp\\a.tmp", nullptr); }, -1,
     "~temp/a.tmp"},
    {"a digest is made by the worker",
     [] { return vcMakeDigestFile("a.wav", "stereo.wav", "temp\\a.tmp"), WaitForWorker(); }, -1,
     "?temp/a.tmp ~temp/a.tmp"},
    {"a digest is drawn",
     [] { return vcOpenDigestFile("temp\\a.tmp"), vcDrawHalfDigestWave(nullptr, 100, 100, 0, 1), kQuiet; }, -1, ""},
    {"a digest is shortened", [] { return vcAdjustDigestFile("temp\\a.tmp", 300), kQuiet; }, -1,
     "~temp/a.tmp !tmpwav/tmptmptmp.tmp"},
    {"the learner's voice is shown", [] { return vcSetVisualWaveDataMan(0); }, -1, ""},
    {"a recording is cut into sentences", MakeSentences, -1, "?tmp.sen ~tmp.sen"},
    {"a study file is read", ReadStudyFile, -1, ""},
    {"the sentences are taken over",
     [] {
       std::uint32_t starts[3];
       return vcReadTmpIdx(starts, 3);
     },
     -1, ""},
    {"a study file is stored", [] { return vcWriteExtraFileData("a.wav", kStarts, 3), kQuiet; }, -1, ""},
    {"a study file is deleted", [] { return vcWriteExtraFileData("a.wav", kStarts, 0), kQuiet; }, -1, ""},
    {"marks are written", [] { return vcWriteMarkIdx("a.idx", kStarts, 3), kQuiet; }, -1, ""},
    {"parameters are taken over", [] { return vcIfSoundParaFileExist("a.wav"), kQuiet; }, -1, ""},
    {"parameters are stored", [] { return vcWriteSoundFilePara("a.wav", "a.par", kRecord); }, -1, ""},
    {"parameters are read",
     [] {
       char record[20];
       return vcReadSoundFilePara("a.par", record);
     },
     -1, ""},
    {"numbers are written", [] { return vcWriteParaFile("a.par", 1, 2, 3), kQuiet; }, -1, ""},
    {"numbers are compared", [] { return vcIfParaMatch("a.scr", 0, 0, 0); }, 0, ""},
    {"one channel is written", [] { return vcSteroToMono("stereo.wav", "b.wav"); }, -1, "!b.wav"},
    {"a stretch is copied",
     [] {
       char buffer[100];
       return vcExtractWaveSeg("a.wav", "b.wav", 500, 2500, buffer, 100);
     },
     -1, "!b.wav"},
    {"sentences are deleted", [] { return Delete("a.wav", "zud\\a.zud"); }, -1, "?zud/a.zud !tmpwav/tmpdest.wav"},
    {"questions are compiled", [] { return vcConvertScrToTstWz("a.zud", "a.scr"); }, -1, "!temp/a.tst !temp/a.wz"},
    {"questions are read", ReadBank, -1, ""},
    {"a title is read",
     [] {
       char title[150];
       return vcGetArticleTitle("unit1", 1, title);
     },
     -1, ""},
    {"files are copied", [] { return vcStrongCopyFile("temp\\", "a.*", "zud\\"), kQuiet; }, -1, ""},
    {"a file is deleted", [] { return vcDeleteFile("a.par"); }, -1, ""},
};

class LostNothing : public EngineTest {
 protected:
  static Files AllFiles() {
    Files files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(".")) {
      if (entry.is_regular_file()) {
        files[entry.path().lexically_relative(".").generic_string()] = ReadBytes(entry.path());
      }
    }
    return files;
  }

  // Marks with their time, or they would count as those of another script.
  void Restore(const Files& wanted) const {
    const Files now = AllFiles();
    for (const auto& [name, bytes] : now) {
      if (wanted.count(name) == 0) std::filesystem::remove(name);
    }
    for (const auto& [name, bytes] : wanted) {
      const auto found = now.find(name);
      if (found == now.end() || found->second != bytes) WriteBytes(name, bytes);
      if (!name.ends_with(".mrk")) continue;
      EXPECT_TRUE(platform::SetLastWriteTime(name.c_str(), times_.at(name)));
    }
  }

  static bool IsExempt(const Case& c, char mark, const std::string& name) {
    std::istringstream words{std::string(c.exempt)};
    return std::any_of(std::istream_iterator<std::string>(words), {},
                       [&](const std::string& word) { return word == mark + name; });
  }

  void Check(const Case& c, std::int32_t result, FileFault fault, FaultExtent extent) {
    const Files now = AllFiles();
    Files all = before_;
    all.insert(after_.begin(), after_.end());
    all.insert(now.begin(), now.end());
    for (const auto& [name, unused] : all) {
      const auto in = [&name = name](const Files& files) {
        const auto found = files.find(name);
        return found == files.end() ? nullptr : &found->second;
      };
      const auto equal = [](const Bytes* left, const Bytes* right) {
        return left == nullptr || right == nullptr ? left == right : *left == *right;
      };
      if (IsExempt(c, '!', name) || (IsExempt(c, '?', name) && in(now) == nullptr)) continue;
      if (fault == FileFault::EndsEarly && IsExempt(c, '~', name)) continue;
      // What a removal that failed leaves is cleared by the next writer, as what a kill leaves is.
      if (extent == FaultExtent::AllFromThere && name.find(".tavimo-") != std::string::npos) continue;
      const bool isOld = equal(in(now), in(before_));
      EXPECT_TRUE(isOld || equal(in(now), in(after_))) << name << " is neither the old one nor the new one";
      EXPECT_TRUE(isOld || result != c.refused) << name << " changed in spite of the refusal";
      const bool isPromised = !IsExempt(c, '?', name) && result != c.refused && result != kQuiet &&
                              fault == FileFault::Fails && in(after_) != nullptr;
      EXPECT_TRUE(!isPromised || equal(in(now), in(after_))) << name << " is not the new one";
    }
  }

  // The files of the lesson are before_; runs the work undisturbed and counts its operations.
  std::int64_t Watch(const Case& c) {
    Restore(before_);
    std::int64_t operations = 0;
    {
      const FaultPlan watch = FaultPlan::Watch();
      c.work();
      operations = watch.OperationsMade();
    }
    ResetEveryRoom();
    after_ = AllFiles();
    return operations;
  }

  void FailAt(const Case& c, std::int64_t n, FileFault fault, FaultExtent extent) {
    SCOPED_TRACE(std::string(c.what) + ", operation " + std::to_string(n));
    Restore(before_);
    std::int32_t result = 0;
    {
      const FaultPlan plan = FaultPlan::FailAt(n, fault, extent);
      result = c.work();
      WaitForWorker();
    }
    ResetEveryRoom();
    Check(c, result, fault, extent);
    EXPECT_EQ(OpenHandleCount(), handles_) << "every handle is closed";
    ++faultCount_;
  }

  void FailEverywhere(const Case& c) {
    const std::int64_t operations = Watch(c);
    ASSERT_GE(operations, 1) << c.what;
    handles_ = OpenHandleCount();
    for (const FaultExtent extent : {FaultExtent::OneOperation, FaultExtent::AllFromThere}) {
      for (const FileFault fault : {FileFault::Fails, FileFault::EndsEarly}) {
        for (std::int64_t n = 1 + first_ % operations; n <= operations; n += Stride()) FailAt(c, n, fault, extent);
        first_ = (first_ + 1) % Stride();
      }
    }
    Watch(c);
    EXPECT_EQ(AllFiles(), after_) << c.what << ": whatever was left is in nobody's way";
  }

  // Runs every case on the lesson that lies in the scratch folder now.
  template <std::size_t Count>
  void FailEverywhere(const Case (&cases)[Count]) {
    before_ = AllFiles();
    for (const auto& [name, bytes] : before_) EXPECT_TRUE(platform::GetLastWriteTime(name.c_str(), times_[name]));
    for (const Case& c : cases) FailEverywhere(c);
    RecordProperty("faults", std::to_string(faultCount_));
  }

  MessageBoxes boxes_;
  Files before_;
  Files after_;
  std::map<std::string, platform::FileTime> times_;  // of before_, to the full: a C++ library may know whole seconds
  std::size_t handles_ = 0;
  int faultCount_ = 0;
  int first_ = 0;  // by strides every row of faults begins at another operation
};

TEST_F(LostNothing, WhicheverOperationFails) {
  WriteLesson();
  ASSERT_EQ(vcConvertScrToTstWz("a.zud", "a.scr"), 0);
  ASSERT_EQ(MakeSentences(), 3);
  WriteBytes("a.tmp", {1, 2, 3});
  WriteBytes("a.idx", {1, 2, 3, 4});
  ResetEveryRoom();
  FailEverywhere(kCases);
}

// A recording that goes on keeps what was in it: the sound before the place, and every byte behind what was written.
TEST_F(LostNothing, OfARecordingThatGoesOn) {
  WriteLesson();
  const Bytes before = ReadBytes("a.wav");
  for (std::int64_t n = 1; n <= 20; ++n) {
    WriteBytes("a.wav", before);
    {
      const FaultPlan plan = FaultPlan::FailAt(n, FileFault::Fails, FaultExtent::AllFromThere);
      Record(vcAppendTapeFile("a.wav"));
    }
    ResetEveryRoom();
    const Bytes now = ReadBytes("a.wav");
    ASSERT_GE(now.size(), before.size()) << n;
    EXPECT_TRUE(std::equal(before.begin() + 44, before.end(), now.begin() + 44)) << n;
    EXPECT_EQ(vcIsWaveFile("a.wav"), 1) << n;
  }
}

VcDc pane = nullptr;

constexpr Case kPageCases[] = {
    {"pages are found",
     [] {
       vcSetPageSettings(pane, 200, 100, 0, 0, 1);
       return vcGenPageFile(0, "a.txt", "a.pag", pane);
     },
     -1, "~a.pag"},
    {"a script is opened anew",
     [] {
       const std::int32_t pages = vcOpenScript("a.txt", "a.pag", "new.mrk", nullptr);
       vcCloseScript();
       return pages < 0 ? kQuiet : pages;
     },
     -1, "~new.mrk"},
    {"a word is marked",
     [] {
       vcSetPageSettings(pane, 200, 100, 0, 0, 1);
       vcOpenScript("a.txt", "a.pag", "a.mrk", nullptr);
       vcReadPage(0, 0);
       vcCountPage(pane);
       return vcBeginSelect(pane, 40, 5, nullptr, nullptr);
     },
     0, "~a.mrk !a.mrk~"},
    {"a script is opened after a program was stopped while it saved a mark",
     [] {
       WriteBytes("left.mrk", ReadBytes("left.mrk"));  // takes its time away
       const std::int32_t pages = vcOpenScript("a.txt", "a.pag", "left.mrk", nullptr);
       vcCloseScript();
       return pages < 0 ? kQuiet : pages;
     },
     -1, "~left.mrk ?left.mrk~"},
};

TEST_F(LostNothing, OfPagesAndMarks) {
  pane = tvCreateDc(320, 200);
  if (tvSelectFont(pane, "WenQuanYi Zen Hei", 16) != 0) GTEST_SKIP() << "WenQuanYi Zen Hei is not installed";
  WriteLesson();
  vcSetPageSettings(pane, 200, 100, 0, 0, 1);
  ASSERT_EQ(vcGenPageFile(0, "a.txt", "a.pag", pane), -2);
  ASSERT_GE(vcOpenScript("a.txt", "a.pag", "a.mrk", nullptr), 0);
  ASSERT_EQ(vcReadPage(0, 0), 0);
  ASSERT_GT(vcCountPage(pane), 0);
  ASSERT_GT(vcBeginSelect(pane, 40, 5, nullptr, nullptr), 0);
  ResetEveryRoom();
  WriteBytes("left.mrk", ReadBytes("a.mrk"));
  Bytes note;
  AppendLittleEndian(note, static_cast<std::uint64_t>(WriteTimeOf("a.txt")), 8);
  WriteBytes("left.mrk~", note);
  FailEverywhere(kPageCases);
  tvDestroyDc(pane);
}

}  // namespace
}  // namespace tavimo::tests
