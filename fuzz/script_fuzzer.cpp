// A question script of any bytes is compiled, and what comes out is read as a bank.
#include <vector>

#include "support/bank.h"
#include "support/fuzz_ground.h"
#include "tavimo.h"

using namespace tavimo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kFewestBytesOfAQuestion = 7;
  fuzz::Prepare();
  const std::vector<std::uint8_t> script = fuzz::Stretched(data, size);
  // More sentences than questions, or four, which most scripts go beyond: the length of the input says which.
  const std::size_t sentenceCount = size % 2 == 0 ? 4 : 1 + script.size() / kFewestBytesOfAQuestion;
  fuzz::WriteFile("a.scr", script);
  fuzz::WriteFile("a.zud", std::vector<std::uint8_t>(320 + 4 * sentenceCount));
  char wzPath[] = "temp\\a.wz";
  std::vector<std::int32_t> answers(sentenceCount);
  const std::int32_t count = vcConvertScr("a.wav", wzPath, answers.data());
  fuzz::Check(count == -1 || static_cast<std::size_t>(count) == sentenceCount, "as many records as sentences, or none");
  const std::vector<std::uint8_t> index = fuzz::ReadFile("temp/a.tst");
  const std::vector<std::uint8_t> wz = fuzz::ReadFile("temp/a.wz");
  fuzz::Check(index.size() % 52 == 0 && wz.size() <= script.size(), "whole records, and texts that the script holds");
  vcOpenQuestionIdx(wzPath, nullptr);
  fuzz::Check(vcOpenWzFile(wzPath) == 0, "the wz file is there");
  fuzz::ReadWholeBank(index, wz.size());
  fuzz::CheckNothingIsLeft();
  return 0;
}
