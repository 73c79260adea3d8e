// A page file, a highlight file and the note beside it, of any bytes and times, beside a script that knows nothing of them.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <vector>

#include "support/fuzz_ground.h"
#include "support/scratch_folder.h"
#include "support/wave_bytes.h"
#include "tavimo.h"

using namespace tavimo;

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr const char* kScript = "a.txt";
constexpr const char* kMarks = "a.mrk";
constexpr const char* kNote = "a.mrk~";
constexpr std::size_t kNoteBytes = 8;

// Any time at all, refused by the system or not, or one like the script's.
void SetTimes(FuzzedDataProvider& input) {
  if (input.ConsumeBool()) tests::SetWriteTime(kScript, input.ConsumeIntegral<std::int64_t>());
  if (input.ConsumeBool()) tests::SetWriteTime(kMarks, tests::WriteTimeOf(kScript));
  if (input.ConsumeBool()) tests::SetWriteTime(kMarks, input.ConsumeIntegral<std::int64_t>());
}

// As a program that was stopped leaves it, of another script, cut, or someone else's file of that name.
Bytes WriteNote(FuzzedDataProvider& input) {
  const int kind = input.ConsumeIntegralInRange<int>(0, 3);
  if (kind == 0) return {};
  Bytes note;
  if (kind == 1) {
    tests::AppendLittleEndian(note, static_cast<std::uint64_t>(tests::WriteTimeOf(kScript)), kNoteBytes);
  } else {
    note = input.ConsumeBytes<std::uint8_t>(input.ConsumeIntegralInRange<std::size_t>(0, kNoteBytes + 4));
  }
  fuzz::WriteFile(kNote, note);
  return note;
}

// A time that the engine cannot tell, before 1678 say, is 0 here and current for nothing.
bool IsCurrent() {
  const std::int64_t time = tests::WriteTimeOf(kScript);
  return time != 0 && tests::WriteTimeOf(kMarks) == time;
}

void CheckNote(const Bytes& note) {
  if (note.size() > kNoteBytes) {
    fuzz::Check(fuzz::ReadFile(kNote) == note, "a file that is no note is left alone");
  } else {
    fuzz::Check(!IsCurrent() || !tests::Exists(kNote), "a note goes when the marks are current");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Prepare();
  FuzzedDataProvider input(data, size);
  const std::int32_t scrambled = input.ConsumeIntegralInRange<std::int32_t>(0, 1);
  const std::int32_t x = input.ConsumeIntegral<std::int16_t>();
  const std::int32_t y = input.ConsumeIntegral<std::int16_t>();
  const auto marks = input.ConsumeBytes<std::uint8_t>(input.ConsumeIntegralInRange<std::size_t>(0, 300));
  const auto text = input.ConsumeBytes<std::uint8_t>(input.ConsumeIntegralInRange<std::size_t>(0, 6000));
  const Bytes script = fuzz::Stretched(text.data(), text.size());
  fuzz::WriteFile(kScript, script);
  fuzz::WriteFile(kMarks, marks);
  SetTimes(input);
  const Bytes note = WriteNote(input);
  const auto pageFile = input.ConsumeRemainingBytes<std::uint8_t>();
  fuzz::WriteFile("a.pag", pageFile);
  const bool isKept = IsCurrent();
  const VcDc pane = fuzz::PaneWithFont();
  vcSetPageSettings(pane, 300, 190, 4, 4, 1);
  std::int32_t slots = -1;
  const std::int32_t pages = vcOpenScript("a.txt", "a.pag", "a.mrk", &slots);
  fuzz::Check(pages >= 0 || pageFile.size() < 8, "a page file with an entry opens");
  fuzz::Check(!isKept || fuzz::ReadFile(kMarks) == marks, "marks of this very script are kept");
  CheckNote(note);
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
  CheckNote(note);
  fuzz::Check(fuzz::ReadFile(kScript) == script && fuzz::ReadFile("a.pag") == pageFile, "only marks are written");
  fuzz::CheckNothingIsLeft();
  return 0;
}
