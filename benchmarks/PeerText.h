#pragma once

// Lines of text as programs draw the same one repeatedly: laid out once, then only drawn.

#include "CairoCanvas.h"
#include "QtCanvas.h"

#include <QStaticText>

#include <memory>
#include <pango/pangocairo.h>

inline constexpr const char* kFontFamily = "Liberation Sans";

struct TextStyle {
    double fontSize; ///< in pixels
    bool isBold = false;
    double kern = 0; ///< between letters, in pixels
};

/// A line of Pango's for a cairo canvas.
class PangoLine {
public:
    PangoLine(const CairoCanvas& canvas, const char* text, const TextStyle& style)
        : _layout(pango_cairo_create_layout(canvas.cairo()))
    {
        PangoFontDescription* font = pango_font_description_from_string(kFontFamily);
        pango_font_description_set_absolute_size(font, style.fontSize * PANGO_SCALE);
        pango_font_description_set_weight(font, style.isBold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
        pango_layout_set_font_description(_layout.get(), font);
        pango_font_description_free(font);
        PangoAttrList* attributes = pango_attr_list_new();
        pango_attr_list_insert(attributes, pango_attr_letter_spacing_new(int(style.kern * PANGO_SCALE)));
        pango_layout_set_attributes(_layout.get(), attributes);
        pango_attr_list_unref(attributes);
        pango_layout_set_text(_layout.get(), text, -1);
        PangoRectangle extents;
        pango_layout_get_extents(_layout.get(), nullptr, &extents);
        _size = CGSizeMake(double(extents.width) / PANGO_SCALE, double(extents.height) / PANGO_SCALE);
    }
    /// In the middle of the rectangle, in the source of `cairo`.
    void draw(cairo_t* cairo, CGRect rect) const
    {
        cairo_move_to(cairo, CGRectGetMidX(rect) - _size.width / 2, CGRectGetMidY(rect) - _size.height / 2);
        pango_cairo_show_layout(cairo, _layout.get());
    }

private:
    struct Delete {
        void operator()(PangoLayout* layout) const { g_object_unref(layout); }
    };
    std::unique_ptr<PangoLayout, Delete> _layout;
    CGSize _size{};
};

/// A line of Qt's. Its painter needs the line's font.
class QtLine {
public:
    QtLine(const char* text, const TextStyle& style)
        : _font(QString::fromLatin1(kFontFamily))
        , _text(QString::fromUtf8(text))
    {
        _font.setPixelSize(int(style.fontSize));
        _font.setBold(style.isBold);
        _font.setLetterSpacing(QFont::AbsoluteSpacing, style.kern);
        _font.setHintingPreference(QFont::PreferNoHinting);
        _text.setTextFormat(Qt::PlainText);
        _text.setPerformanceHint(QStaticText::AggressiveCaching);
        _text.prepare(QTransform(), _font);
    }
    const QFont& font() const { return _font; }
    /// In the middle of the rectangle, in the colour of the painter's pen.
    void draw(QPainter& painter, CGRect rect) const
    {
        const QSizeF size = _text.size();
        painter.drawStaticText(
            QPointF(CGRectGetMidX(rect) - size.width() / 2, CGRectGetMidY(rect) - size.height() / 2), _text);
    }

private:
    QFont _font;
    QStaticText _text;
};
