// A badge with its count and shadow, drawn at the same place each time, beside QPainter and cairo with Pango.
// The peers keep their fonts, gradients and, where it says so, the blurred shadow; text is laid out each
// time, as ours is.

#include "PeerShapes.h"

#include <KorvidAppKit/ZRShapes.h>

#include <QGuiApplication>
#include <QLinearGradient>

#include <pango/pangocairo.h>

namespace {

constexpr Size kCanvas{80, 60};
constexpr char kText[] = "24";
constexpr double kFontSize = 12;
/// The badge that ours comes to.
constexpr CGRect kBadge{{27, 19}, {26, 22}};
constexpr double kRadius = 12;

void drawOurs(benchmark::State& state)
{
    const Ours canvas(kCanvas);
    CGContextTranslateCTM(canvas.context.get(), 40, 30);
    constexpr CGFloat kRed[]{0.9, 0.1, 0.1, 1};
    const auto color = adopt(CGColorCreate(canvas.space.get(), kRed));
    const NSString text = kText;
    for (auto _ : state)
        ZRDrawBadge(canvas.context.get(), color.get(), text, kFontSize, 1);
}

void drawCairos(benchmark::State& state, bool keeps)
{
    const Cairo canvas(kCanvas);
    cairo_t* cairo = canvas.cairo.get();
    cairo_identity_matrix(cairo);
    CairoShadow shadow(kBadge, kRadius);
    shadow.draw(0);
    const double middle = CGRectGetMidY(kBadge);
    const auto fade = [middle](double end, double white, double alpha, double lastAlpha) {
        std::unique_ptr<cairo_pattern_t, Cairo::Delete> pattern(
            cairo_pattern_create_linear(0, middle, 0, end));
        cairo_pattern_add_color_stop_rgba(pattern.get(), 0, white, white, white, alpha);
        cairo_pattern_add_color_stop_rgba(pattern.get(), 1, white, white, white, lastAlpha);
        return pattern;
    };
    const auto shade = fade(CGRectGetMaxY(kBadge), 0, 0, 0.2);
    const auto sheen = fade(CGRectGetMinY(kBadge), 1, 0.1, 0.4);
    PangoLayout* layout = pango_cairo_create_layout(cairo);
    PangoFontDescription* font = pango_font_description_from_string("Liberation Sans Bold");
    pango_font_description_set_absolute_size(font, kFontSize * PANGO_SCALE);
    pango_layout_set_font_description(layout, font);

    for (auto _ : state) {
        if (!keeps)
            shadow.draw(0);
        shadow.paint(cairo);
        addRoundedRect(cairo, kBadge, kRadius - 1);
        cairo_set_source_rgb(cairo, 0.1, 0.1, 0.9);
        cairo_fill_preserve(cairo);
        cairo_save(cairo);
        cairo_clip_preserve(cairo);
        for (auto* gradient : {shade.get(), sheen.get()}) {
            cairo_set_source(cairo, gradient);
            cairo_paint(cairo);
        }
        cairo_restore(cairo);
        cairo_set_source_rgb(cairo, 1, 1, 1);
        cairo_set_line_width(cairo, 2);
        cairo_stroke(cairo);
        pango_layout_set_text(layout, kText, -1);
        PangoRectangle ink;
        pango_layout_get_pixel_extents(layout, &ink, nullptr);
        cairo_move_to(cairo, std::round(CGRectGetMidX(kBadge) - ink.x - ink.width / 2.0),
            std::round(middle - ink.y - ink.height / 2.0));
        pango_cairo_show_layout(cairo, layout);
    }
    pango_font_description_free(font);
    g_object_unref(layout);
}

void drawQts(benchmark::State& state, bool keeps)
{
    Qts canvas(kCanvas);
    QPainter& painter = canvas.painter;
    QtShadow shadow(kBadge, kRadius);
    shadow.draw(0);
    const double middle = CGRectGetMidY(kBadge);
    QLinearGradient shade(0, middle, 0, CGRectGetMaxY(kBadge));
    shade.setColorAt(0, QColor(0, 0, 0, 0));
    shade.setColorAt(1, QColor(0, 0, 0, 51));
    QLinearGradient sheen(0, middle, 0, CGRectGetMinY(kBadge));
    sheen.setColorAt(0, QColor(255, 255, 255, 26));
    sheen.setColorAt(1, QColor(255, 255, 255, 102));
    QFont font("Liberation Sans");
    font.setPixelSize(int(kFontSize));
    font.setBold(true);
    painter.setFont(font);
    const QString text = kText;
    const QRectF rect(kBadge.origin.x, kBadge.origin.y, kBadge.size.width, kBadge.size.height);

    for (auto _ : state) {
        if (!keeps)
            shadow.draw(0);
        shadow.paint(painter);
        const QPainterPath path = roundedRect(kBadge, kRadius - 1);
        painter.fillPath(path, QColor(230, 26, 26));
        painter.fillPath(path, shade);
        painter.fillPath(path, sheen);
        painter.strokePath(path, QPen(Qt::white, 2));
        painter.setPen(Qt::white);
        painter.drawText(rect, Qt::AlignCenter, text);
    }
}

const bool registered = [] {
    // QPainter needs one for text. The offscreen window system needs no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int count = 1;
    static char name[] = "badge";
    static char* arguments[] = {name, nullptr};
    static const QGuiApplication application(count, arguments);
    add("badge with count and shadow/ours", drawOurs);
    add("badge with count and shadow/cairo and Pango, plain blur", drawCairos, false);
    add("badge with count and shadow/QPainter, plain blur", drawQts, false);
    add("badge with count and shadow/cairo and Pango, blur kept by the program", drawCairos, true);
    add("badge with count and shadow/QPainter, blur kept by the program", drawQts, true);
    benchmark::AddCustomContext("Pango", pango_version_string());
    return true;
}();

} // namespace
