// A wz file of any bytes under an index that points to its parts, to its end and past it.
#include <vector>

#include "exercises/question_record.h"
#include "support/bank.h"
#include "support/fuzz_ground.h"
#include "tavimo.h"

using namespace tavimo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Prepare();
  const std::vector<std::uint8_t> texts = fuzz::Stretched(data, size);
  fuzz::WriteFile("temp/a.wz", texts);
  const auto all = static_cast<std::uint32_t>(texts.size());
  std::vector<std::uint8_t> index;
  for (const std::int32_t type : {exercises::kQuestion, exercises::kPassage}) {
    for (const std::uint32_t offset : {0u, 1u, all / 2, all}) {
      for (const std::uint32_t length : {0u, all / 2, all - offset, all - offset + 1}) {
        const auto bytes = exercises::WriteQuestionRecord({type, 0, offset, length, 0, 0});
        index.insert(index.end(), bytes.begin(), bytes.end());
      }
    }
  }
  fuzz::WriteFile("temp/a.tst", index.data(), index.size());
  char path[] = "temp\\a.wz";
  fuzz::Check(vcOpenQuestionIdx(path, nullptr) == 32 && vcOpenWzFile(path) == 0, "the bank is there");
  fuzz::ReadWholeBank(index, texts.size());
  fuzz::CheckNothingIsLeft();
  return 0;
}
