// A page file and a highlight file of any bytes beside a script that knows nothing of them.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "support/fuzz_ground.h"
#include "tavimo.h"

using namespace tavimo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Prepare();
  FuzzedDataProvider input(data, size);
  const std::int32_t scrambled = input.ConsumeIntegralInRange<std::int32_t>(0, 1);
  const bool isCurrent = input.ConsumeBool();
  const std::int32_t x = input.ConsumeIntegral<std::int16_t>();
  const std::int32_t y = input.ConsumeIntegral<std::int16_t>();
  const auto marks = input.ConsumeBytes<std::uint8_t>(input.ConsumeIntegralInRange<std::size_t>(0, 300));
  const auto script = input.ConsumeBytes<std::uint8_t>(input.ConsumeIntegralInRange<std::size_t>(0, 6000));
  const auto pageFile = input.ConsumeRemainingBytes<std::uint8_t>();
  fuzz::WriteFile("a.txt", script);
  fuzz::WriteFile("a.mrk", marks);
  fuzz::WriteFile("a.pag", pageFile);
  if (isCurrent) std::filesystem::last_write_time("a.mrk", std::filesystem::last_write_time("a.txt"));
  const VcDc pane = fuzz::PaneWithFont();
  vcSetPageSettings(pane, 300, 190, 4, 4, 1);
  std::int32_t slots = -1;
  const std::int32_t pages = vcOpenScript("a.txt", "a.pag", "a.mrk", &slots);
  fuzz::Check(pages >= 0 || pageFile.size() < 8, "a page file with an entry opens");
  std::vector<VcPageIndexEntry> entries(pageFile.size() / 8 + 1);
  const auto room = static_cast<std::int32_t>(entries.size());
  fuzz::Check(vcReadBookPageIdx(room, entries.data()) <= room, "no more entries than the file has");
  for (std::int32_t page = -1; page <= std::min(pages, 12); ++page) {
    if (vcReadPage(scrambled, page) == -1) continue;
    const std::int32_t lines = vcCountPage(pane);
    fuzz::Check(lines >= 0 && lines <= 60 && vcDisplayPage(pane) == lines, "60 lines at most, and all are drawn");
    for (const std::int32_t down : {y, 0, 10, 30}) {
      fuzz::ExactRoom word(161);
      std::int32_t state = 0;
      vcBeginSelect(pane, x, down, &state, word.Data());
    }
  }
  vcCloseScript();
  fuzz::Check(fuzz::ReadFile("a.txt") == script && fuzz::ReadFile("a.pag") == pageFile, "only marks are written");
  fuzz::CheckNothingIsLeft();
  return 0;
}
