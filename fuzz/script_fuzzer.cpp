// A question script of any bytes is compiled, and what comes out is read as a bank.
#include <vector>

#include "support/bank.h"
#include "support/fuzz_ground.h"
#include "tavimo.h"

using namespace tavimo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kSentenceCount = 4;
  fuzz::Prepare();
  fuzz::WriteFile("a.scr", data, size);
  fuzz::WriteFile("a.zud", std::vector<std::uint8_t>(320 + 4 * kSentenceCount).data(), 320 + 4 * kSentenceCount);
  char wzPath[] = "temp\\a.wz";
  std::int32_t answers[kSentenceCount] = {};
  const std::int32_t count = vcConvertScr("a.wav", wzPath, answers);
  fuzz::Check(count == -1 || count == kSentenceCount, "as many records as sentences, or none");
  const std::vector<std::uint8_t> index = fuzz::ReadFile("temp/a.tst");
  const std::vector<std::uint8_t> wz = fuzz::ReadFile("temp/a.wz");
  fuzz::Check(index.size() % 52 == 0 && wz.size() <= size, "whole records, and texts that the script holds");
  vcOpenQuestionIdx(wzPath, nullptr);
  fuzz::Check(vcOpenWzFile(wzPath) == 0, "the wz file is there");
  fuzz::ReadWholeBank(index, wz.size());
  fuzz::CheckNothingIsLeft();
  return 0;
}
