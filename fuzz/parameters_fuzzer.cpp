// Parameter files and a profile of titles, each of any bytes.
#include <algorithm>
#include <string>
#include <vector>

#include "support/fuzz_ground.h"
#include "support/host_values.h"
#include "tavimo.h"

using namespace tavimo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Prepare();
  auto [file, input] = fuzz::FileWithNumbers(data, size, 3, 60);
  for (const char* path : {"a.par", "article.txt", "a.wav"}) fuzz::WriteFile(path, file);

  const auto first = input.ConsumeIntegral<std::int32_t>();
  const auto second = input.ConsumeIntegral<std::int32_t>();
  const auto third = input.ConsumeIntegral<std::int32_t>();
  vcIfParaMatch("a.par", first, second, third);
  vcWriteParaFile("b.par", first, second, third);
  fuzz::Check(vcIfParaMatch("b.par", first, second, third) == 1, "numbers that were written match");

  fuzz::Check(vcIfSoundParaFileExist("a.wav") == 1, "parameters beside the recording are taken over");
  std::uint8_t record[20] = {};
  fuzz::Check(vcReadSoundFilePara("temp\\a.par", record) == 1, "and can be read");
  const std::size_t given = std::min(file.size(), sizeof record);
  fuzz::Check(std::equal(record, record + given, file.data()), "as far as there are any");
  fuzz::Check(vcWriteSoundFilePara("a.wav", "temp\\a.par", record) == 1, "and written");
  fuzz::Check(fuzz::ReadFile("temp/a.par") == std::vector<std::uint8_t>(record, record + sizeof record), "as they are");

  const std::string section = input.ConsumeRandomLengthString(12);
  fuzz::ExactRoom title(150);
  for (const char* name : {section.c_str(), "unit1", ""}) {
    const std::int32_t length =
        vcGetArticleTitle(name, input.ConsumeIntegralInRange<std::int32_t>(-1, 12), title.Data());
    const std::size_t byteCount = std::strlen(title.Data());
    fuzz::Check(length >= 0 && static_cast<std::size_t>(length) <= byteCount + 1 && byteCount < 150,
                "a title fits its buffer");
  }
  fuzz::CheckNothingIsLeft();
  return 0;
}
