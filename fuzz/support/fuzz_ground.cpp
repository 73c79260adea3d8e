#include "support/fuzz_ground.h"

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "digest/digest_state.h"
#include "support/engine_state.h"
#include "support/scratch_folder.h"
#include "support/system.h"
#include "tavimo_host.h"

namespace tavimo::fuzz {

namespace fs = std::filesystem;

namespace {

constexpr const char* kFont = "WenQuanYi Zen Hei";
constexpr const char* kWorkingFolders[] = {"temp", "tmpwav", "zud"};

std::size_t handlesBefore = 0;  // counted for each input: the fuzzer opens files of its own between them

// Two folders below the one that is removed at the end: two paths that are joined can make one step upwards.
const fs::path& Ground() {
  static const tests::ScratchFolder folder;
  static const fs::path ground = folder.Root() / "above" / "ground";
  return ground;
}

void LimitFiles() {
  const rlimit limit{kLargestFile, kLargestFile};
  std::signal(SIGXFSZ, SIG_IGN);
  Check(setrlimit(RLIMIT_FSIZE, &limit) == 0, "files can be limited");
}

void PrepareProcess() {
  fs::create_directories(Ground());
  fs::current_path(Ground());
  LimitFiles();
  tests::SetVariable("XDG_CONFIG_HOME", Ground().c_str());
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    tvMapDrive(letter, Ground().c_str(), letter == 'D' ? TV_DRIVE_CDROM : TV_DRIVE_FIXED);
  }
  tvUseWaveInput("host");
  tvUseWaveOutput("host");
  PaneWithFont();  // its libraries keep handles of their own
}

// A worker of the input before would write into this one's folder.
void EndWorker() {
  constexpr int kTries = 20'000;
  vcCancelMakeDigest();
  for (int i = 0; (digest::State().digestJob.percentage.load() & digest::kWorkerRuns) != 0; ++i) {
    Check(i < kTries, "a digest worker ends when it is told to");
    std::this_thread::sleep_for(std::chrono::microseconds(i < 100 ? 1 : 1000));
  }
}

void ResetEngine() {
  EndWorker();
  tests::ResetEveryRoom();
  tvSetKeyDown(TV_VK_CONTROL, 0);
}

void EmptyGround() {
  for (const fs::directory_entry& entry : fs::directory_iterator(".")) fs::remove_all(entry.path());
  for (const char* folder : kWorkingFolders) fs::create_directory(folder);
}

bool HasTemporaryFile(const char* folder) {
  std::error_code isMissing;
  const fs::directory_iterator entries(folder, isMissing);
  return std::any_of(begin(entries), end(entries), [](const fs::directory_entry& entry) {
    return entry.path().filename().string().starts_with(".tavimo-");
  });
}

VcDc MakePane(bool hasFont) {
  const VcDc pane = tvCreateDc(320, 200);
  Check(pane != nullptr, "a picture can be made");
  if (hasFont) Check(tvSelectFont(pane, kFont, 16) == 0, "the font WenQuanYi Zen Hei is installed");
  return pane;
}

}  // namespace

void Prepare() {
  static const bool isPrepared = (PrepareProcess(), true);
  static_cast<void>(isPrepared);
  ResetEngine();
  EmptyGround();
  tvSetMessageBoxHandler([](const char* text, const char* caption, void*) { LookAtMessage(text, caption); }, nullptr);
  tvSetBeepHandler([](void*) {}, nullptr);
  handlesBefore = tests::OpenHandleCount();
}

// The fuzzer opens corpora and writes what it found after the first run has changed the folder: its paths become
// absolute.
extern "C" int LLVMFuzzerInitialize(int* argumentCount, char*** arguments) {
  static std::vector<std::string> texts;
  static std::vector<char*> pointers;
  texts = {(*arguments)[0], "-artifact_prefix=" + (fs::current_path() / "").string()};
  for (int i = 1; i < *argumentCount; ++i) {
    const char* argument = (*arguments)[i];
    texts.push_back(*argument == '-' ? argument : fs::absolute(argument).string());
  }
  for (std::string& text : texts) pointers.push_back(text.data());
  *argumentCount = static_cast<int>(pointers.size());
  pointers.push_back(nullptr);
  *arguments = pointers.data();
  return 0;
}

void WriteFile(const char* path, const std::uint8_t* bytes, std::size_t byteCount) {
  tests::WriteBytes(path, tests::Bytes(bytes, bytes + byteCount));
}

std::vector<std::uint8_t> ReadFile(const char* path) { return tests::ReadBytes(path); }

void Check(bool isKept, std::string_view promise) {
  if (isKept) return;
  std::fprintf(stderr, "BROKEN: %.*s\n", static_cast<int>(promise.size()), promise.data());
  std::abort();
}

void LookAtMessage(const char* text, const char* caption) {
  Check(std::strlen(text) < 320 && std::strlen(caption) < 320, "a message has less than 320 bytes");
}

std::vector<std::uint8_t> Stretched(const std::uint8_t* bytes, std::size_t byteCount) {
  constexpr std::size_t kBeyondAnyPage = 20'000;
  constexpr std::size_t kBeyondAWindow = 70'000;
  constexpr std::size_t kBeyondAPiece = 280'000;
  const std::uint8_t choice = byteCount > 0 ? bytes[byteCount - 1] : 0;
  const std::size_t wanted = choice == 1   ? kBeyondAPiece
                             : choice == 2 ? kBeyondAWindow
                             : choice == 3 ? kBeyondAnyPage
                                           : byteCount;
  std::vector<std::uint8_t> stretched(bytes, bytes + byteCount);
  while (stretched.size() < wanted) stretched.insert(stretched.end(), bytes, bytes + byteCount);
  return stretched;
}

std::string HarmlessPath(std::string path) {
  for (std::size_t at = path.find(".."); at != std::string::npos; at = path.find("..", at)) path[at] = '_';
  for (std::size_t at = path.find("tavimo-"); at != std::string::npos; at = path.find("tavimo-")) path[at] = '_';
  path.erase(0, path.find_first_not_of("\\/"));
  return path;
}

void CheckNothingIsLeft() {
  ResetEngine();
  Check(tests::OpenHandleCount() == handlesBefore, "no handle is left open");
  for (const char* folder : {".", "temp", "tmpwav", "zud"}) {
    Check(!HasTemporaryFile(folder), "no half-written file is left");
  }
}

VcDc PaneWithFont() {
  static const VcDc pane = MakePane(true);
  return pane;
}

VcDc PaneWithoutFont() {
  static const VcDc pane = MakePane(false);
  return pane;
}

VcDc DeadPane() {
  static const VcDc pane = MakePane(false);
  static const bool isDestroyed = (tvDestroyDc(pane), true);
  static_cast<void>(isDestroyed);
  return pane;
}

}  // namespace tavimo::fuzz
