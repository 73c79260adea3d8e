// Implements glyph_page.h.
#include "glyph_page.h"

#include <cairo/cairo-ft.h>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <array>
#include <stdexcept>

#include "tavimo_host.h"

namespace tavimo::bench {

namespace {

cairo_scaled_font_t* LoadFont(const char* family, int pixelHeight) {
  FcPattern* wanted = FcPatternCreate();
  FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
  FcDefaultSubstitute(wanted);
  FcResult result = FcResultNoMatch;
  FcPattern* found = FcFontMatch(nullptr, wanted, &result);
  cairo_font_face_t* face = cairo_ft_font_face_create_for_pattern(found);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_NONE);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_FULL);
  cairo_matrix_t size;
  cairo_matrix_t identity;
  cairo_matrix_init_scale(&size, pixelHeight, pixelHeight);
  cairo_matrix_init_identity(&identity);
  cairo_scaled_font_t* font = cairo_scaled_font_create(face, &size, &identity, options);
  cairo_font_options_destroy(options);
  cairo_font_face_destroy(face);
  FcPatternDestroy(found);
  FcPatternDestroy(wanted);
  return font;
}

// The first character of well-formed UTF-8.
char32_t FirstCharacter(const char* utf8) {
  const auto lead = static_cast<unsigned char>(utf8[0]);
  if (lead < 0x80) return lead;
  const int more = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
  char32_t character = lead & (0x3F >> more);
  for (int i = 1; i <= more; ++i) character = character << 6 | (static_cast<unsigned char>(utf8[i]) & 0x3F);
  return character;
}

}  // namespace

GlyphPage::GlyphPage(const char* family, int pixelHeight, int width, int height)
    : surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)),
      font_(LoadFont(family, pixelHeight)),
      width_(width) {
  if (cairo_scaled_font_status(font_) != CAIRO_STATUS_SUCCESS) throw std::runtime_error("the font cannot be loaded");
}

GlyphPage::~GlyphPage() {
  cairo_scaled_font_destroy(font_);
  cairo_surface_destroy(surface_);
}

int GlyphPage::Place(std::string_view gbk, std::span<const std::int32_t, 256> advances, int lineHeight) {
  glyphs_.clear();
  int x = 0;
  int line = 0;
  FT_Face face = cairo_ft_scaled_font_lock_face(font_);
  for (std::size_t i = 0; i < gbk.size();) {
    const auto byte = static_cast<unsigned char>(gbk[i]);
    const std::size_t byteCount = byte < 0x81 ? 1 : 2;
    const std::string character(gbk.substr(i, byteCount));
    std::array<char, 8> utf8{};
    if (tvUtf8FromGbk(character.c_str(), utf8.data(), utf8.size()) > 0 && byte > ' ') {
      glyphs_.push_back({FT_Get_Char_Index(face, FirstCharacter(utf8.data())), static_cast<double>(x),
                         static_cast<double>((line + 1) * lineHeight)});
    }
    x += static_cast<int>(byteCount) * advances[byte];
    if (x >= width_ || byte == '\n') {
      x = 0;
      ++line;
    }
    i += byteCount;
  }
  cairo_ft_scaled_font_unlock_face(font_);
  return line;
}

void GlyphPage::Draw() {
  cairo_t* painter = cairo_create(surface_);
  cairo_set_source_rgb(painter, 0, 0, 0);
  cairo_set_scaled_font(painter, font_);
  cairo_show_glyphs(painter, glyphs_.data(), static_cast<int>(glyphs_.size()));
  cairo_destroy(painter);
}

}  // namespace tavimo::bench
