#include "page_canvas.h"

#include <algorithm>
#include <sstream>
#include <vector>

#include "content_hash.h"
#include "refusal.h"
#include "text.h"

namespace tavimo::host {

namespace {

constexpr const char* kWideCharacter = "\xB8\xDF";  // 高, which the engine measures too

std::string FontNames() {
  constexpr int kRoom = 1 << 20;
  std::vector<char> lines(kRoom);
  tvListFonts(lines.data(), kRoom);
  std::string names;
  std::istringstream families(lines.data());
  for (std::string family; std::getline(families, family);) names.append(family).append(", ");
  return names;
}

void SelectFont(VcDc picture, const PageSetup& setup) {
  if (tvSelectFont(picture, setup.font.c_str(), setup.sizePx) == 0) return;
  const std::string names = FontNames();
  if (names.empty()) throw Refusal("no font with Chinese characters is installed");
  throw Refusal("there is no font '" + ReadableText(setup.font) + "' with Chinese characters; there are " +
                ReadableText(names) + "and sans-serif, serif, monospace");
}

void MeasureBytes(PageCanvas& canvas) {
  std::int32_t wideWidth = 0;
  std::int32_t textHeight = 0;
  tvCharWidths(canvas.picture.get(), canvas.advances.data());
  tvTextExtent(canvas.picture.get(), kWideCharacter, 2, &wideWidth, &textHeight);
  std::fill(canvas.advances.begin() + 128, canvas.advances.end(), wideWidth / 2);
}

std::string Sides(int width, int height) { return std::to_string(width).append("x").append(std::to_string(height)); }

// The engine measures the "@@" of a paragraph as blanks but sets the line with the width of two '@', so that the line
// may reach farther to the right than others: into the margin, half a character of which stays empty even then.
int MarginFor(const PageCanvas& canvas) {
  const std::int32_t overhang = 2 * (canvas.advances['@'] - canvas.advances[' ']);
  return std::max(overhang, 0) + canvas.advances[0xFF];
}

}  // namespace

PageCanvas MakePageCanvas(const PageSetup& setup) {
  PageCanvas canvas;
  canvas.picture = MakePicture(setup.width, setup.height);
  SelectFont(canvas.picture.get(), setup);
  MeasureBytes(canvas);
  canvas.margin = MarginFor(canvas);
  canvas.textWidth = setup.width - 2 * canvas.margin;
  canvas.textHeight = setup.height - 2 * canvas.margin;
  canvas.spacing = setup.spacing;
  canvas.lineHeight = vcSetPageSettings(canvas.picture.get(), canvas.textWidth, canvas.textHeight, canvas.margin,
                                        canvas.margin, setup.spacing);
  const std::int32_t widest = *std::max_element(canvas.advances.begin(), canvas.advances.begin() + 127);
  const std::int32_t leastWidth = 2 * std::max(widest, 2 * canvas.advances[0xFF]) + 1;
  if (canvas.lineHeight > 0 && canvas.textWidth >= leastWidth && canvas.textHeight >= canvas.lineHeight) return canvas;
  throw Refusal("a page of " + Sides(setup.width, setup.height) +
                " has no room for a line of two characters; this font needs " +
                Sides(leastWidth + 2 * canvas.margin, canvas.lineHeight + 2 * canvas.margin));
}

void UsePageArea(const PageCanvas& canvas, PageArea area) {
  const int height = area == PageArea::Whole ? canvas.textHeight : canvas.lineHeight;
  vcSetPageSettings(canvas.picture.get(), canvas.textWidth, height, canvas.margin, canvas.margin, canvas.spacing);
}

std::string HashOf(const PageCanvas& canvas) {
  std::string numbers = std::to_string(canvas.lineHeight);
  for (const std::int32_t advance : canvas.advances) numbers.append(1, ' ').append(std::to_string(advance));
  return ContentHash(numbers.data(), numbers.size());
}

}  // namespace tavimo::host
