// Kills a program of ours at random moments while it works for the learner, and looks at what is on the disk then: each file is
// the one before or the one after the job at hand, whole, and no half-written file is taken for it. As a program of its own,
// because a test program with threads cannot be divided at will.
//
//   tavimo_kills [TIMES [SEED]]     TIMES kills for each job; a seed repeats the moments, though not what the system makes of
//                                   them
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "support/lesson_files.h"
#include "support/scratch_folder.h"
#include "support/wave_bytes.h"
#include "tavimo.h"
#include "tavimo_host.h"

namespace tavimo::tests {
namespace {

constexpr int kBlock = 1256;
constexpr std::size_t kWords = 40;
constexpr std::uint32_t kDeleteStarts[] = {0, 2000, 4000};

// What the program that is killed tells the one that kills it: the job it is at, and the last one it has been told is done.
struct Progress {
  std::atomic<std::int64_t> begun;
  std::atomic<std::int64_t> done;
};

Progress* progress = nullptr;

[[noreturn]] void Fail(const std::string& reason) {
  std::printf("BROKEN: %s\n", reason.c_str());
  std::exit(1);
}

void Expect(bool isKept, const std::string& reason) {
  if (!isKept) Fail(reason);
}

// One kind of work. Job k brings the files from the state of k - 1 to that of k; both are known by k alone.
class Work {
 public:
  Work() = default;
  Work(const Work&) = delete;
  Work& operator=(const Work&) = delete;
  virtual ~Work() = default;
  [[nodiscard]] virtual const char* Name() const = 0;
  virtual void Prepare() {}               // in the parent, on a fresh lesson
  virtual void Begin() {}                 // in the child
  virtual void Do(std::int64_t job) = 0;  // in the child
  // In the parent: the files are in the state of one of two jobs; which one.
  virtual std::int64_t StateFound(std::int64_t done, std::int64_t begun) = 0;
};

std::int64_t Either(bool isDone, bool isBegun, std::int64_t done, std::int64_t begun, const std::string& file) {
  Expect(isDone || isBegun, file + " is neither the old one nor the new one");
  return isBegun ? begun : done;
}

// The sound of a recording grows; a kill loses at most the block at hand.
class Recording final : public Work {
 public:
  const char* Name() const override { return "recording"; }
  void Begin() override {
    tvUseWaveInput("host");
    vcSetWaveInAndOutWndProc(0, tvCreateWindow(TV_WINDOW, nullptr, nullptr));
    vcNewTapeFile(22050, 8, 1, "tmpwav\\tmpmic.wav");
    vcWaveInOpenForTape(22050, 8, 1);
    vcRecordTape();
  }
  void Do(std::int64_t job) override {
    const Bytes block(kBlock, static_cast<std::uint8_t>(job % 251));
    tvFeedWaveInput(block.data(), kBlock);
    tvDispatchMessages(0);
  }
  std::int64_t StateFound(std::int64_t done, std::int64_t begun) override {
    const Bytes tape = ReadBytes("tmpwav/tmpmic.wav");
    const auto blocks = static_cast<std::int64_t>((tape.size() - std::min<std::size_t>(tape.size(), kHeader)) / kBlock);
    Expect(blocks == done || blocks == begun, "a block that was taken is not in the tape");
    for (std::int64_t i = 0; i < blocks * kBlock; ++i) {
      const auto expected = static_cast<std::uint8_t>((i / kBlock + 1) % 251);
      Expect(tape[kHeader + static_cast<std::size_t>(i)] == expected, "the tape's sound is another");
    }
    // Only its sizes are missing; the program writes them when it finds such a tape.
    const std::string head(tape.begin(), tape.begin() + static_cast<std::ptrdiff_t>(std::min(tape.size(), kHeader)));
    Expect(head.substr(0, 4) == "RIFF" && head.substr(8, 8) == "WAVEfmt " && head.substr(38, 4) == "data",
           "the tape has no head");
    return blocks;
  }

 private:
  static constexpr std::size_t kHeader = 46;
};

// Starts of which each tells the job that wrote it.
std::vector<std::uint32_t> StartsOf(std::int64_t job) {
  std::vector<std::uint32_t> starts(2 + static_cast<std::size_t>(job % 700));
  for (std::size_t i = 0; i < starts.size(); ++i)
    starts[i] = static_cast<std::uint32_t>(job + static_cast<std::int64_t>(i));
  return starts;
}

class StudyFiles final : public Work {
 public:
  const char* Name() const override { return "storing a study file"; }
  void Prepare() override { Do(0); }
  void Do(std::int64_t job) override {
    const std::vector<std::uint32_t> starts = StartsOf(job);
    vcOpenSentenceFile("none.wav");
    vcAddBookMark(static_cast<std::uint32_t>(job) + 1, "here");
    vcWriteExtraFileData("a.wav", starts.data(), static_cast<std::int32_t>(starts.size()));
  }
  std::int64_t StateFound(std::int64_t done, std::int64_t begun) override {
    const Bytes file = ReadBytes("zud/a.zud");
    return Either(file == FileOf(done), file == FileOf(begun), done, begun, "the study file");
  }

 private:
  static Bytes FileOf(std::int64_t job) {
    Bytes bytes;
    AppendLittleEndian(bytes, static_cast<std::uint64_t>(job) + 1, 4);
    AppendText(bytes, "here");
    bytes.resize(320);
    for (const std::uint32_t start : StartsOf(job)) AppendLittleEndian(bytes, start, 4);
    return bytes;
  }
};

// The same sentence goes out of the same recording again and again; recording and study file come back by copies, which are
// whole too.
class Deletion final : public Work {
 public:
  const char* Name() const override { return "deleting sentences"; }
  void Prepare() override {
    whole_ = ReadBytes("a.wav");
    study_ = ReadBytes("zud/a.zud");
    WriteBytes("kept/a.wav", whole_);
    WriteBytes("kept/a.zud", study_);
    Delete();
    cut_ = ReadBytes("a.wav");
    cutStudy_ = ReadBytes("zud/a.zud");
    WriteBytes("a.wav", whole_);
    WriteBytes("zud/a.zud", study_);
  }
  void Do(std::int64_t job) override {
    if (job % 2 == 1) {
      Delete();
    } else {
      vcStrongCopyFile(".\\", "a.wav", "kept\\");
      vcStrongCopyFile("zud\\", "a.zud", "kept\\");
    }
  }
  std::int64_t StateFound(std::int64_t done, std::int64_t begun) override {
    const Bytes now = ReadBytes("a.wav");
    const auto of = [&](std::int64_t job) -> const Bytes& { return job % 2 == 1 ? cut_ : whole_; };
    const Bytes study = ReadBytes("zud/a.zud");
    Expect(study == study_ || study == cutStudy_, "the study file is neither the old one nor the new one");
    return Either(now == of(done), now == of(begun), done, begun, "the recording");
  }

 private:
  static void Delete() {
    std::uint32_t starts[3];
    std::copy(std::begin(kDeleteStarts), std::end(kDeleteStarts), starts);
    const std::uint32_t flags[] = {0, 1, 0};
    vcDeleteSentenceInFile("a.wav", "zud\\a.zud", 3, flags, starts, nullptr);
  }
  Bytes whole_, cut_, study_, cutStudy_;
};

// Each job marks the next word of a page, and takes the marks away again after the last.
class Marks final : public Work {
 public:
  const char* Name() const override { return "marking words"; }
  void Prepare() override {
    std::string text;
    for (std::size_t i = 0; i < kWords; ++i) text += "ab\r\n";
    WriteText("a.txt", text);
    LayOut();
    Expect(vcGenPageFile(0, "a.txt", "a.pag", pane_) == -2, "the script has no pages");
    Expect(vcOpenScript("a.txt", "a.pag", "a.mrk", nullptr) == 1, "the script has not one page");
    vcCloseScript();
  }
  void Begin() override { LayOut(); }
  // Every other job opens the script first, as the learner's program does when it starts.
  void Do(std::int64_t job) override {
    if (!isOpen_ || job % 2 == 0) {
      vcCloseScript();
      vcOpenScript("a.txt", "a.pag", "a.mrk", nullptr);
      vcReadPage(0, 0);
      vcCountPage(pane_);
      isOpen_ = true;
    }
    const auto word = static_cast<std::int32_t>((job - 1) % static_cast<std::int64_t>(kWords));
    vcBeginSelect(pane_, 1, word * lineHeight_ + 1, nullptr, nullptr);
  }
  std::int64_t StateFound(std::int64_t done, std::int64_t begun) override {
    LayOut();
    Expect(vcOpenScript("a.txt", "a.pag", "a.mrk", nullptr) == 1, "the script does not open");
    Expect(vcReadPage(0, 0) == 0 && vcCountPage(pane_) >= static_cast<std::int32_t>(kWords), "the page is another");
    const auto marks = ReadBytes("a.mrk");
    vcCloseScript();
    const auto of = [](std::int64_t job) {
      Bytes bytes((kWords + 1) / 4 + 1);
      for (std::int64_t i = 0; i < job; ++i) {
        const auto word = static_cast<std::size_t>(i) % kWords;
        bytes[word / 4] = static_cast<std::uint8_t>(bytes[word / 4] ^ 1U << (6 - word % 4 * 2));
      }
      return bytes;
    };
    return Either(marks == of(done), marks == of(begun), done, begun, "the file of marks");
  }

 private:
  void LayOut() {
    if (pane_ == nullptr) {
      pane_ = tvCreateDc(200, 60 * 30);
      Expect(tvSelectFont(pane_, "WenQuanYi Zen Hei", 16) == 0, "the font WenQuanYi Zen Hei is not installed");
    }
    lineHeight_ = vcSetPageSettings(pane_, 200, 60 * 30, 0, 0, 1);
  }
  VcDc pane_ = nullptr;
  std::int32_t lineHeight_ = 0;
  bool isOpen_ = false;  // in the child
};

class Digests final : public Work {
 public:
  const char* Name() const override { return "making a digest"; }
  void Prepare() override {
    const auto seconds = [](std::uint8_t sample) { return WaveFile({1, 1, 22050, 8}, Bytes(22050 * 60, sample)); };
    WriteBytes("even.wav", seconds(100));
    WriteBytes("odd.wav", seconds(50));
    Do(0);
    files_[0] = ReadBytes("temp/a.tmp");
    Do(1);
    files_[1] = ReadBytes("temp/a.tmp");
    Do(0);
    Expect(files_[0].size() == 1500 && files_[0] != files_[1], "the digests are not what they should be");
  }
  void Do(std::int64_t job) override {
    const char* wave = job % 2 == 1 ? "odd.wav" : "even.wav";
    vcSimpleMakeDigestFile(wave, wave, "temp\\a.tmp", nullptr);
  }
  std::int64_t StateFound(std::int64_t done, std::int64_t begun) override {
    const Bytes now = ReadBytes("temp/a.tmp");
    const auto of = [&](std::int64_t job) -> const Bytes& { return files_[static_cast<std::size_t>(job % 2)]; };
    return Either(now == of(done), now == of(begun), done, begun, "the digest");
  }

 private:
  std::array<Bytes, 2> files_;
};

// The compiler's outputs are written in place: what a kill leaves of them is never more than the next compilation mends, and
// reading it is safe. The author's files stay.
class Questions final : public Work {
 public:
  const char* Name() const override { return "compiling questions"; }
  void Prepare() override {
    std::string script;
    Bytes study(320);
    for (int i = 0; i < 400; ++i) {
      script += "##N0T1\nWho is number " + std::to_string(i) + "?\n##XZ\nThis one.\nThat one.\n$$B\n";
      AppendLittleEndian(study, static_cast<std::uint64_t>(i), 4);
    }
    WriteText("a.scr", script);
    WriteBytes("a.zud", study);
    script_ = ReadBytes("a.scr");
    Do(0);
    index_ = ReadBytes("temp/a.tst");
    texts_ = ReadBytes("temp/a.wz");
    Expect(index_.size() == 400 * 52, "the questions do not compile");
  }
  void Do(std::int64_t) override { vcConvertScrToTstWz("a.zud", "a.scr"); }
  std::int64_t StateFound(std::int64_t done, std::int64_t begun) override {
    Expect(ReadBytes("a.scr") == script_, "the script changed");
    const bool isWhole = ReadBytes("temp/a.tst") == index_ && ReadBytes("temp/a.wz") == texts_;
    ReadBank();
    Do(0);
    Expect(ReadBytes("temp/a.tst") == index_ && ReadBytes("temp/a.wz") == texts_, "the next compilation mends nothing");
    return isWhole ? done : begun;
  }

 private:
  static void ReadBank() {
    std::vector<std::int32_t> answers(401);
    std::vector<char> text(40'000);
    char path[] = "temp\\a.tst";
    const std::int32_t count = vcOpenQuestionIdx(path, answers.data());
    vcOpenWzFile(path);
    for (std::int32_t i = 0; i < count; ++i) {
      vcReadCurQuestion(i, &answers[0]);
      vcGetQuestionTxt(text.data());
    }
    vcCloseQuestionIdx();
    vcCloseWzFile();
  }
  Bytes script_, index_, texts_;
};

// In the child: works until it is killed.
[[noreturn]] void WorkForEver(Work& work, std::int64_t job) {
  work.Begin();
  for (;; ++job) {
    progress->begun.store(job);
    work.Do(job);
    progress->done.store(job);
  }
}

std::size_t CountTemporaries() {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(".")) {
    if (entry.path().filename().string().starts_with(".tavimo-")) ++count;
  }
  return count;
}

struct Tally {
  std::int64_t undone = 0;  // kills after which the files were those before the job at hand
  std::int64_t jobs = 0;
  std::size_t mostTemporaries = 0;
};

void KillOnce(Work& work, std::int64_t state, std::chrono::microseconds delay) {
  progress->done.store(state);
  progress->begun.store(state);
  const pid_t child = fork();
  Expect(child >= 0, "no process can be made");
  if (child == 0) WorkForEver(work, state + 1);
  int status = 0;
  while (progress->begun.load() == state) {
    Expect(waitpid(child, &status, WNOHANG) == 0, "the program ended before it did anything");
    std::this_thread::yield();
  }
  std::this_thread::sleep_for(delay);
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
  Expect(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL, "the program ended by itself");
}

// Recording begins anew each time; everything else goes on from the state that was found.
Tally KillTimes(Work& work, int times, std::mt19937& random) {
  const ScratchFolder scratch;
  std::filesystem::create_directory("kept");
  WriteLesson();
  work.Prepare();
  const bool beginsAnew = dynamic_cast<Recording*>(&work) != nullptr;
  std::uniform_int_distribution<int> delayUs(0, 6000);
  Tally tally;
  std::int64_t state = 0;
  for (int i = 0; i < times; ++i) {
    KillOnce(work, state, std::chrono::microseconds(delayUs(random)));
    const std::int64_t done = progress->done.load();
    const std::int64_t begun = progress->begun.load();
    const std::int64_t found = work.StateFound(done, begun);
    if (found != begun) ++tally.undone;
    tally.jobs += begun - state;
    tally.mostTemporaries = std::max(tally.mostTemporaries, CountTemporaries());
    state = beginsAnew ? 0 : found;
  }
  Expect(tally.mostTemporaries <= 3, "half-written files pile up");
  return tally;
}

void KillAll(int times, unsigned seed) {
  Recording recording;
  StudyFiles studyFiles;
  Deletion deletion;
  Marks marks;
  Digests digests;
  Questions questions;
  std::printf("seed %u\n%-22s %7s %9s %10s %12s\n", seed, "", "kills", "jobs", "undone", "temporaries");
  std::mt19937 random(seed);
  for (Work* work : {static_cast<Work*>(&recording), static_cast<Work*>(&studyFiles), static_cast<Work*>(&deletion),
                     static_cast<Work*>(&marks), static_cast<Work*>(&digests), static_cast<Work*>(&questions)}) {
    const Tally tally = KillTimes(*work, times, random);
    std::printf("%-22s %7d %9lld %10lld %12zu\n", work->Name(), times, static_cast<long long>(tally.jobs),
                static_cast<long long>(tally.undone), tally.mostTemporaries);
    std::fflush(stdout);
  }
}

std::optional<unsigned> WholeNumber(const char* word) {
  unsigned number = 0;
  const char* end = word + std::strlen(word);
  const auto [stop, error] = std::from_chars(word, end, number);
  if (error != std::errc() || stop != end || stop == word) return {};
  return number;
}

}  // namespace
}  // namespace tavimo::tests

int main(int argumentCount, char** arguments) {
  using namespace tavimo::tests;
  const std::optional<unsigned> times = argumentCount > 1 ? WholeNumber(arguments[1]) : 20;
  const std::optional<unsigned> seed = argumentCount > 2 ? WholeNumber(arguments[2]) : std::random_device()();
  if (!times || !seed || *times < 1 || *times > 10'000'000) {
    std::fprintf(stderr, "usage: tavimo_kills [TIMES [SEED]], whole numbers, TIMES above 0\n");
    return 2;
  }
  void* shared = mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  Expect(shared != MAP_FAILED, "no memory can be shared");
  progress = new (shared) Progress{};
  tvSetMessageBoxHandler([](const char*, const char*, void*) {}, nullptr);
  tvSetBeepHandler([](void*) {}, nullptr);
  KillAll(static_cast<int>(*times), *seed);
  return 0;
}
