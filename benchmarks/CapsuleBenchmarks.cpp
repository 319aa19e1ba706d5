// A capsule view with a status word, drawn at the same place each time, beside QPainter and cairo with Pango.
// The view makes font, text and line anew each time, as it always does; the peers keep their fonts and lay
// the text out each time. "moving" draws it at another place between the pixels each time.

#include "PeerShapes.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSGraphicsContext.h>
#include <KorvidAppKit/ZRCapsuleView.h>

#include <pango/pangocairo.h>

namespace {

constexpr Size kCanvas{80, 22};
constexpr char kText[] = "connected";
constexpr double kFontSize = 9;
constexpr double kKern = kFontSize / 8;
constexpr double kLineWidth = 0.66;
constexpr CGRect kCapsule{{kLineWidth / 2, kLineWidth / 2}, {80 - kLineWidth, 22 - kLineWidth}};
constexpr double kRadius = kCapsule.size.height / 4;

struct Case {
    const char* name;
    bool isFilled;
    bool moves;
};
constexpr Case kCases[] = {{"capsule outline", false, false}, {"capsule filled", true, false},
    {"capsule outline moving", false, true}, {"capsule filled moving", true, true}};

void drawOurs(benchmark::State& state, const Case& which)
{
    const Ours canvas(kCanvas);
    const auto view = make<ZRCapsuleView>(NSMakeRect(0, 0, kCanvas.width, kCanvas.height));
    view->setString(kText);
    view->setColor(NSColor::orangeColor());
    view->setDrawType(which.isFilled ? kZRCapsuleDrawTypeFilled : kZRCapsuleDrawTypeOutline);
    const auto graphics = NSGraphicsContext::graphicsContextWithCGContext(canvas.context, false);
    NSGraphicsContext::setCurrentContext(graphics.get());
    Place place(which.moves);
    double x = 0;
    for (auto _ : state) {
        const double next = place.next();
        CGContextTranslateCTM(canvas.context.get(), next - x, 0);
        x = next;
        view->drawRect(view->bounds());
    }
    NSGraphicsContext::setCurrentContext(nullptr);
}

void drawCairos(benchmark::State& state, const Case& which)
{
    const Cairo canvas(kCanvas);
    cairo_t* cairo = canvas.cairo.get();
    cairo_identity_matrix(cairo);
    PangoLayout* layout = pango_cairo_create_layout(cairo);
    PangoFontDescription* font = pango_font_description_from_string("Liberation Sans");
    pango_font_description_set_absolute_size(font, kFontSize * PANGO_SCALE);
    pango_layout_set_font_description(layout, font);
    PangoAttrList* attributes = pango_attr_list_new();
    pango_attr_list_insert(attributes, pango_attr_letter_spacing_new(int(kKern * PANGO_SCALE)));
    pango_layout_set_attributes(layout, attributes);
    cairo_set_line_width(cairo, kLineWidth);
    Place place(which.moves);

    for (auto _ : state) {
        const double x = place.next();
        cairo_set_source_rgb(cairo, 0, 0.5, 1);
        addRoundedRect(cairo, CGRectOffset(kCapsule, x, 0), kRadius);
        if (which.isFilled)
            cairo_fill(cairo);
        else
            cairo_stroke(cairo);
        if (which.isFilled)
            cairo_set_source_rgb(cairo, 1, 1, 1);
        pango_layout_set_text(layout, kText, -1);
        PangoRectangle extents;
        pango_layout_get_extents(layout, nullptr, &extents);
        cairo_move_to(cairo, x + (kCanvas.width - double(extents.width) / PANGO_SCALE) / 2, 6);
        pango_cairo_show_layout(cairo, layout);
    }
    pango_attr_list_unref(attributes);
    pango_font_description_free(font);
    g_object_unref(layout);
}

void drawQts(benchmark::State& state, const Case& which)
{
    Qts canvas(kCanvas);
    QPainter& painter = canvas.painter;
    QFont font("Liberation Sans");
    font.setPixelSize(int(kFontSize));
    font.setLetterSpacing(QFont::AbsoluteSpacing, kKern);
    font.setHintingPreference(QFont::PreferNoHinting);
    painter.setFont(font);
    const QString text = kText;
    const QColor orange(255, 128, 0);
    const QPen pen(orange, kLineWidth);
    Place place(which.moves);

    for (auto _ : state) {
        const double x = place.next();
        const QPainterPath path = roundedRect(CGRectOffset(kCapsule, x, 0), kRadius);
        if (which.isFilled)
            painter.fillPath(path, orange);
        else
            painter.strokePath(path, pen);
        painter.setPen(which.isFilled ? QColor(Qt::white) : orange);
        painter.drawText(QRectF(x, 0, kCanvas.width, kCanvas.height), Qt::AlignCenter, text);
    }
}

const bool registered = [] {
    for (const Case& which : kCases) {
        const std::string place = std::string(which.name) + "/";
        add(place + "ours", drawOurs, which);
        add(place + "cairo and Pango", drawCairos, which);
        add(place + "QPainter", drawQts, which);
    }
    return true;
}();

} // namespace
