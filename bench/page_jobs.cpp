// Pagination, a page laid out and drawn, a click on it.
#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include "glyph_page.h"
#include "job.h"
#include "limits.h"
#include "tavimo.h"
#include "tavimo_host.h"

namespace tavimo::bench {

namespace {

constexpr int kWidth = 600;
constexpr int kHeight = 400;
constexpr int kFontPixels = 16;
constexpr const char* kFamily = "WenQuanYi Zen Hei";
constexpr const char* kPageFile = "temp\\script.pag";
constexpr std::int32_t kWritten = -2;

// The text pane of a host, with its font.
struct Pane {
  Pane() : dc(tvCreateDc(kWidth, kHeight)) {
    Expect(tvSelectFont(dc, kFamily, kFontPixels) == 0, "tvSelectFont");
    lineHeight = vcSetPageSettings(dc, kWidth, kHeight, 0, 0, 0);
    Expect(lineHeight > 0 && tvCharWidths(dc, advances.data()) == 0, "vcSetPageSettings");
    // As the engine measures Chinese: half a character for each byte.
    constexpr std::size_t kFirstDoubleByte = 0x80;
    std::int32_t width = 0;
    std::int32_t height = 0;
    Expect(tvTextExtent(dc, "\xB8\xDF", 2, &width, &height) == 0, "tvTextExtent");
    std::fill(advances.begin() + kFirstDoubleByte, advances.end(), width / 2);
  }
  Pane(const Pane&) = delete;
  Pane& operator=(const Pane&) = delete;
  ~Pane() { tvDestroyDc(dc); }

  void Paginate() const { Expect(vcGenPageFile(0, kScript, kPageFile, dc) == kWritten, "vcGenPageFile"); }

  // How many pages.
  [[nodiscard]] std::int32_t Open() const {
    Paginate();
    const std::int32_t pages = vcOpenScript(kScript, kPageFile, "temp\\script.hil", nullptr);
    Expect(pages > 0, "vcOpenScript");
    return pages;
  }

  VcDc dc;
  std::int32_t lineHeight = 0;
  std::array<std::int32_t, 256> advances{};
};

Measurement MeasurePaginate(const Inputs&) {
  const Pane pane;
  return MeasureBulk({[&] { pane.Paginate(); },
                      [&] { benchmark::DoNotOptimize(FillLines(kScript, pane.advances, kWidth)); },
                      LengthOf(kScript),
                      {}});
}

std::string TextOfPage(std::int32_t page) {
  std::array<VcPageIndexEntry, 2> bounds{};
  std::vector<VcPageIndexEntry> entries(static_cast<std::size_t>(page) + 2);
  Expect(vcReadBookPageIdx(page + 2, entries.data()) == page + 2, "vcReadBookPageIdx");
  std::copy(entries.end() - 2, entries.end(), bounds.begin());
  std::string text(bounds[1].text_offset - bounds[0].text_offset, '\0');
  std::ifstream script(kScript, std::ios::binary);
  script.seekg(bounds[0].text_offset);
  script.read(text.data(), static_cast<std::streamsize>(text.size()));
  return text;
}

Measurement MeasurePage(const Inputs&) {
  const Pane pane;
  const std::int32_t page = pane.Open() / 2;
  GlyphPage limit(kFamily, kFontPixels, kWidth, kHeight);
  const std::string text = TextOfPage(page);
  Expect(limit.Place(text, pane.advances, pane.lineHeight) > 1, "the limit's lines");
  const auto show = [&] {
    Expect(vcReadPage(0, page) >= 0 && vcCountPage(pane.dc) > 1 && vcDisplayPage(pane.dc) > 1, "vcDisplayPage");
  };
  return MeasureSmall({show, [&] { limit.Draw(); }, std::ssize(text), {}});
}

Measurement MeasureClick(const Inputs&) {
  const Pane pane;
  const std::int32_t page = pane.Open() / 2;
  Expect(vcReadPage(0, page) >= 0 && vcCountPage(pane.dc) > 1 && vcDisplayPage(pane.dc) > 1, "vcDisplayPage");
  std::array<char, 161> word{};
  std::int32_t state = 0;
  std::int32_t clicks = 0;
  const auto click = [&] {
    const std::int32_t line = clicks++ % (kHeight / pane.lineHeight);
    vcBeginSelect(pane.dc, kWidth - 1, line * pane.lineHeight + 2, &state, word.data());
    benchmark::DoNotOptimize(state);
  };
  return MeasureSmall({click, {}, 0, {}});
}

}  // namespace

std::vector<Job> PageJobs() {
  return {{.name = "paginate",
           .what = "script of 10 MB paginated",
           .inputs = {Input::Script},
           .growth = Growth::Proportional,
           .mostTimes = 3,
           .measure = MeasurePaginate},
          {.name = "page",
           .what = "page read, laid out and drawn",
           .inputs = {Input::Script},
           .mostTimes = 1.5,
           .mostSeconds = 0.002,
           .measure = MeasurePage},
          {.name = "click",
           .what = "click on a page",
           .inputs = {Input::Script},
           .mostSeconds = 0.001,
           .measure = MeasureClick}};
}

}  // namespace tavimo::bench
