// Implements fonts.h: Fontconfig finds the file, Cairo scales it, FreeType maps characters to glyphs.
#include "platform/linux/fonts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <set>
#include <string>
#include <string_view>
#include <tuple>

#include "platform/linux/drawing_libraries.h"
#include "platform/text.h"

namespace tavimo::platform {

namespace {

template <auto kDestroy>
struct DestroyWith {
  template <class T>
  void operator()(T* object) const noexcept {
    (Drawing().*kDestroy)(object);
  }
};
using Pattern = std::unique_ptr<FcPattern, DestroyWith<&DrawingLibraries::FcPatternDestroy>>;
using FontSet = std::unique_ptr<FcFontSet, DestroyWith<&DrawingLibraries::FcFontSetDestroy>>;
using ObjectSet = std::unique_ptr<FcObjectSet, DestroyWith<&DrawingLibraries::FcObjectSetDestroy>>;
using CharacterSet = std::unique_ptr<FcCharSet, DestroyWith<&DrawingLibraries::FcCharSetDestroy>>;
using FontFace = std::unique_ptr<cairo_font_face_t, DestroyWith<&DrawingLibraries::cairo_font_face_destroy>>;
using FontOptions = std::unique_ptr<cairo_font_options_t, DestroyWith<&DrawingLibraries::cairo_font_options_destroy>>;

// A font that has this one has the Chinese characters.
constexpr FcChar32 kChineseProbe = 0x9AD8;  // 高

const FcChar8* FontconfigText(const char* text) noexcept { return reinterpret_cast<const FcChar8*>(text); }

// The best font for a family, which may be of another family; fonts with Chinese characters come first.
Pattern FindBest(const char* family, int pixelHeight) {
  const Pattern wanted(Drawing().FcPatternCreate());
  const CharacterSet characters(Drawing().FcCharSetCreate());
  if (!wanted || !characters) return nullptr;
  Drawing().FcCharSetAddChar(characters.get(), kChineseProbe);
  Drawing().FcPatternAddString(wanted.get(), FC_FAMILY, FontconfigText(family));
  Drawing().FcPatternAddDouble(wanted.get(), FC_PIXEL_SIZE, pixelHeight);
  Drawing().FcPatternAddCharSet(wanted.get(), FC_CHARSET, characters.get());
  Drawing().FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
  Drawing().FcDefaultSubstitute(wanted.get());
  FcResult result = FcResultNoMatch;
  return Pattern(Drawing().FcFontMatch(nullptr, wanted.get(), &result));
}

bool IsGenericFamily(const char* family) {
  constexpr std::array<const char*, 3> kGenericFamilies{"sans-serif", "serif", "monospace"};
  return std::any_of(kGenericFamilies.begin(), kGenericFamilies.end(), [&](const char* generic) {
    return Drawing().FcStrCmpIgnoreCase(FontconfigText(generic), FontconfigText(family)) == 0;
  });
}

// A font may have its name in several languages.
bool IsOfFamily(const FcPattern* font, const char* family) {
  FcChar8* name = nullptr;
  for (int i = 0; Drawing().FcPatternGetString(font, FC_FAMILY, i, &name) == FcResultMatch; ++i) {
    if (Drawing().FcStrCmpIgnoreCase(name, FontconfigText(family)) == 0) return true;
  }
  return false;
}

bool HasChinese(const FcPattern* font) {
  FcCharSet* characters = nullptr;
  return Drawing().FcPatternGetCharSet(font, FC_CHARSET, 0, &characters) == FcResultMatch &&
         Drawing().FcCharSetHasChar(characters, kChineseProbe);
}

// The fonts with Chinese characters, their names alone.
FontSet ListChinese() {
  const Pattern wanted(Drawing().FcPatternCreate());
  const CharacterSet characters(Drawing().FcCharSetCreate());
  const ObjectSet names(Drawing().FcObjectSetCreate());
  if (!wanted || !characters || !names) return nullptr;
  Drawing().FcCharSetAddChar(characters.get(), kChineseProbe);
  Drawing().FcPatternAddCharSet(wanted.get(), FC_CHARSET, characters.get());
  Drawing().FcObjectSetAdd(names.get(), FC_FAMILY);
  return FontSet(Drawing().FcFontList(nullptr, wanted.get(), names.get()));
}

// No antialiasing, so that a word drawn again in red covers the black one to the last pixel; advances in whole pixels,
// because the engine adds them up as such.
FontOptions PlainOptions() {
  FontOptions options(Drawing().cairo_font_options_create());
  Drawing().cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_NONE);
  Drawing().cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_FULL);
  Drawing().cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_ON);
  return options;
}

}  // namespace

std::vector<Cell> SplitIntoCells(std::string_view gbk) {
  std::vector<Cell> cells;
  cells.reserve(gbk.size());
  for (std::size_t i = 0; i < gbk.size();) {
    const bool hasTrail = IsLeadByte(gbk[i]) && i + 1 < gbk.size();
    const auto trail = hasTrail ? static_cast<unsigned char>(gbk[i + 1]) : static_cast<unsigned char>(0);
    cells.push_back({UnicodeFromGbk(static_cast<unsigned char>(gbk[i]), trail), hasTrail ? 2 : 1});
    i += hasTrail ? 2 : 1;
  }
  return cells;
}

std::string ChineseFamilies() {
  std::set<std::string> families;
  if (LoadedDrawing() == nullptr) return {};
  const FontSet fonts = ListChinese();
  for (int font = 0; fonts && font < fonts->nfont; ++font) {
    FcChar8* name = nullptr;
    for (int i = 0; Drawing().FcPatternGetString(fonts->fonts[font], FC_FAMILY, i, &name) == FcResultMatch; ++i) {
      families.insert(reinterpret_cast<const char*>(name));
    }
  }
  std::string lines;
  for (const std::string& family : families) lines += family + "\n";
  return lines;
}

std::unique_ptr<Font> Font::Load(const char* family, int pixelHeight) {
  if (LoadedDrawing() == nullptr) return nullptr;
  const Pattern found = FindBest(family, pixelHeight);
  if (!found || !HasChinese(found.get())) return nullptr;
  if (!IsGenericFamily(family) && !IsOfFamily(found.get(), family)) return nullptr;
  const FontFace face(Drawing().cairo_ft_font_face_create_for_pattern(found.get()));
  cairo_matrix_t size;
  cairo_matrix_t identity;
  Drawing().cairo_matrix_init_scale(&size, pixelHeight, pixelHeight);
  Drawing().cairo_matrix_init_identity(&identity);
  Handle font(Drawing().cairo_scaled_font_create(face.get(), &size, &identity, PlainOptions().get()));
  if (Drawing().cairo_scaled_font_status(font.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  return std::unique_ptr<Font>(new Font(std::move(font)));
}

Font::Font(Handle font) noexcept : font_(std::move(font)) {
  cairo_font_extents_t extents;
  Drawing().cairo_scaled_font_extents(font_.get(), &extents);
  ascent_ = static_cast<int>(std::lround(extents.ascent));
  textHeight_ = ascent_ + static_cast<int>(std::lround(extents.descent));
}

// The rule: glyph = FT_Get_Char_Index(face, character), which searches the font's tables anew for each character. The
// face is locked only when there is a character that was not asked for before.
void Font::FindGlyphs(std::span<Cell> cells) const noexcept {
  FT_Face face = nullptr;
  for (Cell& cell : cells) {
    KnownGlyph& known = knownGlyphs_[cell.character % knownGlyphs_.size()];
    if (known.character != cell.character) {
      if (face == nullptr) face = Drawing().cairo_ft_scaled_font_lock_face(font_.get());
      if (face == nullptr) return;
      known = {cell.character, cell.character ? Drawing().FT_Get_Char_Index(face, cell.character) : 0};
    }
    cell.glyph = known.glyph;
  }
  if (face != nullptr) Drawing().cairo_ft_scaled_font_unlock_face(font_.get());
}

// Two rounds: while the face is locked, Cairo cannot measure with it.
void Font::Measure(std::span<Cell> cells) const noexcept {
  FindGlyphs(cells);
  for (Cell& cell : cells) {
    const cairo_glyph_t glyph{cell.glyph, 0, 0};
    cairo_text_extents_t extents;
    Drawing().cairo_scaled_font_glyph_extents(font_.get(), &glyph, 1, &extents);
    cell.advance = static_cast<std::int32_t>(std::lround(extents.x_advance));
  }
}

TextSize Font::Measure(std::string_view gbk) const {
  std::vector<Cell> cells = SplitIntoCells(gbk);
  Measure(cells);
  const auto width = std::accumulate(cells.begin(), cells.end(), std::int64_t{0},
                                     [](std::int64_t sum, const Cell& cell) { return sum + cell.advance; });
  return {static_cast<std::int32_t>(std::min<std::int64_t>(width, std::numeric_limits<std::int32_t>::max())),
          cells.empty() ? 0 : textHeight_};
}

const ByteAdvances& Font::AdvancesOfBytes() const noexcept {
  if (advancesOfBytes_) return *advancesOfBytes_;
  std::array<Cell, std::tuple_size_v<ByteAdvances>> cells{};
  for (std::size_t byte = 0; byte < cells.size(); ++byte) {
    cells[byte].character = UnicodeFromGbk(static_cast<unsigned char>(byte), 0);
  }
  Measure(cells);
  ByteAdvances& advances = advancesOfBytes_.emplace();
  std::transform(cells.begin(), cells.end(), advances.begin(), [](const Cell& cell) { return cell.advance; });
  return advances;
}

}  // namespace tavimo::platform
