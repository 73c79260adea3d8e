// A script of any bytes broken into pages for any font height and rectangle, read, drawn and clicked on page by page.
#include <algorithm>
#include <vector>

#include "support/fuzz_ground.h"
#include "support/host_values.h"
#include "tavimo.h"
#include "tavimo_host.h"

using namespace tavimo;

namespace {

constexpr int kMostPages = 12;  // what comes behind is laid out in the same way

// Pages come one after another in the script, and none is larger than the engine's page; before a zero byte, which ends the
// text, the last one may be empty.
std::int32_t CheckPageFile(std::int32_t pageCount, std::size_t scriptBytes) {
  std::vector<VcPageIndexEntry> entries(static_cast<std::size_t>(pageCount) + 1);
  fuzz::Check(vcReadBookPageIdx(pageCount + 1, entries.data()) == pageCount + 1, "an entry more than pages");
  for (std::size_t i = 1; i < entries.size(); ++i) {
    const std::uint32_t byteCount = entries[i].text_offset - entries[i - 1].text_offset;
    const bool isRising = byteCount <= 4988 && (byteCount > 0 || i + 1 == entries.size());
    fuzz::Check(isRising && entries[i].first_word >= entries[i - 1].first_word, "pages follow one another");
  }
  fuzz::Check(entries.back().text_offset <= scriptBytes, "pages lie in the script");
  return std::min(pageCount, kMostPages);
}

void Click(VcDc pane, FuzzedDataProvider& numbers) {
  const auto near = [&] { return numbers.ConsumeIntegralInRange<std::int32_t>(-20, 340); };
  for (int i = 0; i < 4; ++i) {
    const bool isFar = numbers.ConsumeIntegralInRange<int>(0, 15) == 0;
    const std::int32_t x = isFar ? numbers.ConsumeIntegral<std::int32_t>() : near();
    const std::int32_t y = isFar ? numbers.ConsumeIntegral<std::int32_t>() : near();
    fuzz::ExactRoom word(161);
    std::int32_t state[2] = {7, 7};
    const std::int32_t length = vcBeginSelect(pane, x, y, &state[0], word.Data());
    if (length == 0) continue;
    fuzz::Check(std::strlen(word.Data()) == static_cast<std::size_t>(length) && length <= 160, "a word has its length");
    fuzz::ExactRoom again(161);
    fuzz::Check(vcBeginSelect(pane, x, y, &state[1], again.Data()) == length && state[0] + state[1] == 1,
                "a second click takes the mark away or sets it again");
  }
}

void ReadPages(VcDc pane, std::int32_t scrambled, std::int32_t pageCount, FuzzedDataProvider& numbers) {
  for (std::int32_t page = 0; page < pageCount; ++page) {
    fuzz::Check(vcReadPage(scrambled, page) >= 0, "a page that is listed can be read");
    const std::int32_t lines = vcCountPage(pane);
    fuzz::Check(lines >= 0 && lines <= 60 && vcDisplayPage(pane) == lines, "60 lines at most, and all are drawn");
    Click(pane, numbers);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Prepare();
  constexpr int kHeights[] = {16, 12, 40, 1};
  fuzz::FileWithNumbers input(data, size, 3, 160);
  const std::vector<std::uint8_t>& script = input.file;
  FuzzedDataProvider& numbers = input.numbers;
  fuzz::WriteFile("a.txt", script);
  const VcDc pane = fuzz::PaneWithFont();
  tvSelectFont(pane, "WenQuanYi Zen Hei", kHeights[numbers.ConsumeIntegralInRange<std::size_t>(0, 3)]);
  const bool isPlain = numbers.ConsumeIntegralInRange<int>(0, 7) != 0;
  const auto side = [&] {
    return isPlain ? numbers.ConsumeIntegralInRange<std::int32_t>(0, 330) : numbers.ConsumeIntegral<std::int32_t>();
  };
  const std::int32_t width = side();
  const std::int32_t height = side();
  const std::int32_t left = side();
  const std::int32_t top = side();
  const std::int32_t scrambled = numbers.ConsumeIntegralInRange<std::int32_t>(0, 1);
  fuzz::Check(vcSetPageSettings(pane, width, height, left, top, numbers.ConsumeIntegralInRange<int>(0, 3)) > 0,
              "a font has a line height");
  // With a page for each byte of a long script its disk may be full.
  const bool hasRoom = script.size() * sizeof(VcPageIndexEntry) < fuzz::kLargestFile;
  const bool isMade = vcGenPageFile(scrambled, "a.txt", "a.pag", pane) == -2;
  fuzz::Check(isMade || !hasRoom, "any text has pages");
  if (!isMade) return fuzz::CheckNothingIsLeft(), 0;
  std::int32_t slots = 0;
  const std::int32_t pages = vcOpenScript("a.txt", "a.pag", "a.mrk", &slots);
  fuzz::Check(pages >= 0, "what was made opens");
  ReadPages(pane, scrambled, CheckPageFile(pages, script.size()), numbers);
  vcCloseScript();
  fuzz::Check(fuzz::ReadFile("a.txt") == script, "a script is never changed");
  fuzz::CheckNothingIsLeft();
  return 0;
}
