#pragma once

#include <fontconfig/fontconfig.h>
#include <pango/pangocairo.h>

#include <memory>

/// Releases objects of Pango and the libraries that it uses.
struct PangoDeleter {
    void operator()(PangoFontMap* map) const { g_object_unref(map); }
    void operator()(PangoContext* context) const { g_object_unref(context); }
    void operator()(PangoFont* font) const { g_object_unref(font); }
    void operator()(PangoFontDescription* description) const { pango_font_description_free(description); }
    void operator()(PangoAttrList* list) const { pango_attr_list_unref(list); }
    void operator()(PangoGlyphString* glyphs) const { pango_glyph_string_free(glyphs); }
    void operator()(PangoItem* item) const { pango_item_free(item); }
    void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
    void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
    void operator()(FcObjectSet* set) const { FcObjectSetDestroy(set); }
    void operator()(char* text) const { g_free(text); }
};

/// Owns one reference to such an object.
template <class T> using PangoPtr = std::unique_ptr<T, PangoDeleter>;
