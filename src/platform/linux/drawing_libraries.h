// The libraries that find, scale and paint fonts, loaded when a font or a picture file is first asked for: most
// programs draw no text, and loading these takes many times as long as loading the engine. One list names the functions
// that are used.
#pragma once

#include <cairo/cairo-ft.h>
#include <cairo/cairo.h>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H

namespace tavimo::platform {

#define TAVIMO_DRAWING_FUNCTIONS(FUNCTION)        \
  FUNCTION(cairo_create)                          \
  FUNCTION(cairo_destroy)                         \
  FUNCTION(cairo_font_face_destroy)               \
  FUNCTION(cairo_font_options_create)             \
  FUNCTION(cairo_font_options_destroy)            \
  FUNCTION(cairo_font_options_set_antialias)      \
  FUNCTION(cairo_font_options_set_hint_metrics)   \
  FUNCTION(cairo_font_options_set_hint_style)     \
  FUNCTION(cairo_ft_font_face_create_for_pattern) \
  FUNCTION(cairo_ft_scaled_font_lock_face)        \
  FUNCTION(cairo_ft_scaled_font_unlock_face)      \
  FUNCTION(cairo_image_surface_create_for_data)   \
  FUNCTION(cairo_matrix_init_identity)            \
  FUNCTION(cairo_matrix_init_scale)               \
  FUNCTION(cairo_scaled_font_create)              \
  FUNCTION(cairo_scaled_font_destroy)             \
  FUNCTION(cairo_scaled_font_extents)             \
  FUNCTION(cairo_scaled_font_glyph_extents)       \
  FUNCTION(cairo_scaled_font_status)              \
  FUNCTION(cairo_set_scaled_font)                 \
  FUNCTION(cairo_set_source_rgb)                  \
  FUNCTION(cairo_show_glyphs)                     \
  FUNCTION(cairo_surface_destroy)                 \
  FUNCTION(cairo_surface_write_to_png_stream)     \
  FUNCTION(FcCharSetAddChar)                      \
  FUNCTION(FcCharSetCreate)                       \
  FUNCTION(FcCharSetDestroy)                      \
  FUNCTION(FcCharSetHasChar)                      \
  FUNCTION(FcConfigSubstitute)                    \
  FUNCTION(FcDefaultSubstitute)                   \
  FUNCTION(FcFontList)                            \
  FUNCTION(FcFontMatch)                           \
  FUNCTION(FcFontSetDestroy)                      \
  FUNCTION(FcObjectSetAdd)                        \
  FUNCTION(FcObjectSetCreate)                     \
  FUNCTION(FcObjectSetDestroy)                    \
  FUNCTION(FcPatternAddCharSet)                   \
  FUNCTION(FcPatternAddDouble)                    \
  FUNCTION(FcPatternAddString)                    \
  FUNCTION(FcPatternCreate)                       \
  FUNCTION(FcPatternDestroy)                      \
  FUNCTION(FcPatternGetCharSet)                   \
  FUNCTION(FcPatternGetString)                    \
  FUNCTION(FcStrCmpIgnoreCase)                    \
  FUNCTION(FT_Get_Char_Index)

struct DrawingLibraries {
#define TAVIMO_POINTER(name) decltype(&::name) name = nullptr;  // NOLINT(bugprone-macro-parentheses): declares it
  TAVIMO_DRAWING_FUNCTIONS(TAVIMO_POINTER)
#undef TAVIMO_POINTER
};

// Null when a library or one of the functions is missing. They are never unloaded.
const DrawingLibraries* LoadedDrawing() noexcept;

// REQUIRES: LoadedDrawing() was not null before; so it is for whoever has a Font.
inline const DrawingLibraries& Drawing() noexcept { return *LoadedDrawing(); }

}  // namespace tavimo::platform
