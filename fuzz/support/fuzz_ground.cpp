#include "support/fuzz_ground.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "support/scratch_folder.h"
#include "tavimo_host.h"

namespace tavimo::fuzz {

void Prepare() {
  static const tests::ScratchFolder folder;
  static const bool isPrepared = [] {
    tvSetMessageBoxHandler([](const char* text, const char*,
                              void*) { Check(std::strlen(text) < 320, "a message has less than 320 bytes"); },
                           nullptr);
    tvSetBeepHandler([](void*) {}, nullptr);
    return true;
  }();
  static_cast<void>(isPrepared);
}

// The fuzzer opens corpora and writes what it found after the first run has changed the folder: its paths become
// absolute.
extern "C" int LLVMFuzzerInitialize(int* argumentCount, char*** arguments) {
  static std::vector<std::string> texts;
  static std::vector<char*> pointers;
  texts = {(*arguments)[0], "-artifact_prefix=" + (std::filesystem::current_path() / "").string()};
  for (int i = 1; i < *argumentCount; ++i) {
    const char* argument = (*arguments)[i];
    texts.push_back(*argument == '-' ? argument : std::filesystem::absolute(argument).string());
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

}  // namespace tavimo::fuzz
