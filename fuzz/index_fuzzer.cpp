// A question index of any bytes beside a sound wz file.
#include <vector>

#include "support/bank.h"
#include "support/fuzz_ground.h"
#include "tavimo.h"

using namespace tavimo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::uint8_t kWz[] = "Hi!\nq?\n\0A\nB\nA passage.\n";
  fuzz::Prepare();
  const std::vector<std::uint8_t> index = fuzz::Stretched(data, size);
  fuzz::WriteFile("temp/a.tst", index);
  fuzz::WriteFile("temp/a.wz", kWz, sizeof kWz);
  char path[] = "temp\\a.tst";
  std::vector<std::int32_t> answers(index.size() / 52);
  const std::int32_t count = vcOpenQuestionIdx(path, answers.data());
  fuzz::Check(static_cast<std::size_t>(count) == answers.size(), "every whole record counts");
  fuzz::Check(vcOpenWzFile(path) == 0, "the wz file is there");
  fuzz::ReadWholeBank(index, sizeof kWz);
  fuzz::CheckNothingIsLeft();
  return 0;
}
