// A study file of any bytes, and the same bytes as "tmp.sen": read, listed, changed and stored again.
#include <algorithm>
#include <vector>

#include "support/fuzz_ground.h"
#include "support/host_values.h"
#include "tavimo.h"
#include "tavimo_host.h"

using namespace tavimo;

namespace {

// Reads the study file; its starts, with the table of bookmarks in memory.
std::vector<std::uint32_t> ReadAll(std::size_t byteCount) {
  const std::int32_t count = vcOpenSentenceFile("lessons\\a.wav");
  fuzz::Check(byteCount < 320 ? count == -1 : static_cast<std::size_t>(count) == (byteCount - 320) / 4,
              "a start for every four bytes behind the bookmarks");
  std::uint32_t pair[2] = {};
  for (const std::int32_t index : {0, 79, 80, count, 0x3FFFFFFF, 0x7FFFFFFF, -1, -0x7FFFFFFF - 1}) {
    vcGetSentence(index, &pair[0], &pair[1]);
  }
  std::vector<std::uint32_t> starts(static_cast<std::size_t>(std::max(count, 0)));
  vcReadSentenceData(starts.data(), count);
  return starts;
}

void ListBookMarks(std::int32_t totalMs) {
  const std::int32_t count = vcGetTotalBookMarks();
  fuzz::Check(count >= 0 && count <= 20, "20 bookmarks at most");
  const VcWindow list = tvCreateWindow(TV_LIST_BOX, nullptr, nullptr);
  const std::int32_t lines = vcFillBookMarkList(list, totalMs);
  fuzz::Check(lines == 0 || lines == count, "a line for every bookmark, or none for another recording's");
  fuzz::Check(tvSendMessage(list, TV_LB_GETCOUNT, 0, 0) == lines, "as many lines as are told");
  tvDestroyWindow(list);
}

void ChangeBookMarks(FuzzedDataProvider& numbers) {
  const std::string label = numbers.ConsumeRandomLengthString(20);
  for (int i = numbers.ConsumeIntegralInRange<int>(0, 25); i > 0; --i) {
    vcAddBookMark(numbers.ConsumeIntegral<std::uint32_t>(), label.c_str());
    if (numbers.ConsumeBool()) vcDeleteBookMark(numbers.ConsumeIntegral<std::int32_t>());
    vcGetBookMarkTime(numbers.ConsumeIntegralInRange<std::int32_t>(-2, 22));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Prepare();
  auto [file, numbers] = fuzz::FileWithNumbers(data, size, 8, 60);
  fuzz::WriteFile("zud/a.zud", file);
  fuzz::WriteFile("tmp.sen", file);
  std::vector<std::uint32_t> starts = ReadAll(file.size());
  ListBookMarks(numbers.ConsumeIntegral<std::int32_t>());
  ChangeBookMarks(numbers);
  const std::int32_t kept = vcGetTotalBookMarks();
  const auto count = static_cast<std::int32_t>(starts.size());
  vcWriteExtraFileData("lessons\\a.wav", starts.data(), count);
  const std::size_t stored = fuzz::ReadFile("zud/a.zud").size();
  const bool isWhole = count >= 2 ? stored == 320 + 4 * starts.size() : stored == 320 || (stored == 0 && kept == 0);
  fuzz::Check(isWhole, "what is stored is the whole table");
  if (stored > 0) {
    const std::vector<std::uint32_t> again = ReadAll(stored);
    fuzz::Check(vcGetTotalBookMarks() == kept && (count < 2 || again == starts), "what was stored is read again");
  }
  vcReadTmpIdx(starts.data(), count);
  vcWriteMarkIdx("a.idx", starts.data(), count);
  fuzz::Check(fuzz::ReadFile("a.idx").size() == (count >= 2 ? 4 * starts.size() : 0), "an index has its values");
  fuzz::CheckNothingIsLeft();
  return 0;
}
