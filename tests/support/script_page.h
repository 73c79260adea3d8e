// A text pane with a real font, and the road of a script into it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/engine_test.h"
#include "support/picture.h"

namespace tavimo::tests {

using Entries = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

class ScriptPages : public EngineTest {
 protected:
  void SetUp() override {
    if (tvSelectFont(pane.dc, "WenQuanYi Zen Hei", 16) != 0) GTEST_SKIP() << "WenQuanYi Zen Hei is not installed";
    Measure();
  }

  void SelectFontHeight(int pixels) {
    tvSelectFont(pane.dc, "WenQuanYi Zen Hei", pixels);
    Measure();
  }

  // Pixels of a text as the page adds them up.
  int WidthOf(std::string_view text) const {
    int width = 0;
    for (const char byte : text) width += widths[static_cast<unsigned char>(byte)];
    return width;
  }

  // The page file of a script in the scratch folder.
  Entries Paginate(std::string_view text, int scrambled = 0) {
    WriteText("script.txt", text);
    EXPECT_EQ(vcGenPageFile(scrambled, "script.txt", "script.pag", pane.dc), -2);
    return EntriesOf(ReadBytes("script.pag"));
  }

  static Entries EntriesOf(const Bytes& bytes) {
    const auto number = [&](std::size_t at) {
      return bytes[at] | bytes[at + 1] << 8 | bytes[at + 2] << 16 | static_cast<std::uint32_t>(bytes[at + 3]) << 24;
    };
    Entries entries;
    for (std::size_t at = 0; at + 8 <= bytes.size(); at += 8) entries.emplace_back(number(at), number(at + 4));
    return entries;
  }

  // Paginates, opens, and lays the first page out; its lines.
  int Show(std::string_view text) {
    Paginate(text);
    std::int32_t slots = 0;
    EXPECT_GE(vcOpenScript("script.txt", "script.pag", "script.mrk", &slots), 0);
    EXPECT_GE(vcReadPage(0, 0), 0);
    return vcCountPage(pane.dc);
  }

  static std::string PageText() { return reinterpret_cast<const char*>(pages::State().page.text.data()); }

  static std::vector<std::string> Lines() {
    std::vector<std::string> lines;
    const auto& layout = pages::State().pageLayout;
    for (std::size_t i = 0; i < static_cast<std::size_t>(layout.lineCount); ++i) {
      const auto& line = layout.lines[i];
      lines.push_back(PageText().substr(static_cast<std::size_t>(line.start), static_cast<std::size_t>(line.length)));
    }
    return lines;
  }

  Picture pane{400, 120};
  std::int32_t widths[256] = {};

 private:
  void Measure() {
    std::int32_t character = 0;
    ASSERT_EQ(tvCharWidths(pane.dc, widths), 0);
    ASSERT_EQ(tvTextExtent(pane.dc, "\xB8\xDF", 2, &character, nullptr), 0);
    std::fill(widths + 128, widths + 256, character / 2);
  }
};

}  // namespace tavimo::tests
