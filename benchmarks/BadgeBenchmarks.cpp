// A badge with its count and shadow.

#include "Benchmarks.h"
#include "KorvidCanvas.h"
#include "PeerShadows.h"
#include "PeerText.h"
#include "Table.h"

#include <KorvidAppKit/ZRShapes.h>

#include <QLinearGradient>

namespace {

constexpr const char* kTable = "badge";
constexpr const char* kCase = "count and shadow";
constexpr Size kCanvas{80, 60};
constexpr char kText[] = "24";
constexpr TextStyle kStyle{12, true};
/// What ZRDrawBadge makes of text of this size, around the middle of the canvas.
constexpr CGRect kBadge{{27, 19}, {26, 22}};
constexpr double kRadius = 11;
constexpr double kRingWidth = 2;

void drawKorvidBadge(benchmark::State& state)
{
    const KorvidCanvas canvas(kCanvas);
    CGContextTranslateCTM(canvas.context(), kCanvas.width / 2.0, kCanvas.height / 2.0);
    constexpr CGFloat kRed[]{0.9, 0.1, 0.1, 1};
    const auto color = adopt(CGColorCreate(canvas.colorSpace(), kRed));
    const NSString text = kText;
    for (auto _ : state)
        ZRDrawBadge(canvas.context(), color, text, kStyle.fontSize, 1);
}

/// From the badge's middle to `end`: white or black that becomes more opaque.
CairoPtr<cairo_pattern_t> fade(double end, double white, double firstAlpha, double lastAlpha)
{
    CairoPtr<cairo_pattern_t> pattern(cairo_pattern_create_linear(0, CGRectGetMidY(kBadge), 0, end));
    cairo_pattern_add_color_stop_rgba(pattern.get(), 0, white, white, white, firstAlpha);
    cairo_pattern_add_color_stop_rgba(pattern.get(), 1, white, white, white, lastAlpha);
    return pattern;
}

void drawCairoBadge(benchmark::State& state)
{
    const CairoCanvas canvas(kCanvas);
    cairo_t* const cairo = canvas.cairo();
    const CairoShadow shadow(kBadge.size, kRadius);
    const auto shade = fade(CGRectGetMaxY(kBadge), 0, 0, 0.2);
    const auto sheen = fade(CGRectGetMinY(kBadge), 1, 0.1, 0.4);
    const PangoLine line(canvas, kText, kStyle);
    cairo_set_line_width(cairo, kRingWidth);
    for (auto _ : state) {
        shadow.draw(cairo, kBadge.origin);
        addRoundedRect(cairo, kBadge, kRadius);
        cairo_set_source_rgb(cairo, 0.9, 0.1, 0.1);
        cairo_fill_preserve(cairo);
        for (auto* gradient : {shade.get(), sheen.get()}) {
            cairo_set_source(cairo, gradient);
            cairo_fill_preserve(cairo);
        }
        cairo_set_source_rgb(cairo, 1, 1, 1);
        cairo_stroke(cairo);
        line.draw(cairo, kBadge);
    }
}

/// From the badge's middle to `end`.
QBrush fade(double end, QColor first, QColor last)
{
    QLinearGradient gradient(0, CGRectGetMidY(kBadge), 0, end);
    gradient.setColorAt(0, first);
    gradient.setColorAt(1, last);
    return gradient;
}

void drawQtBadge(benchmark::State& state)
{
    QtCanvas canvas(kCanvas);
    QPainter& painter = canvas.painter();
    const QtShadow shadow(kBadge.size, kRadius);
    const QBrush shade = fade(CGRectGetMaxY(kBadge), QColor(0, 0, 0, 0), QColor(0, 0, 0, 51));
    const QBrush sheen = fade(CGRectGetMinY(kBadge), QColor(255, 255, 255, 26), QColor(255, 255, 255, 102));
    const QBrush red(QColor(230, 26, 26));
    const QPen ring(Qt::white, kRingWidth);
    const QtLine line(kText, kStyle);
    painter.setFont(line.font());
    for (auto _ : state) {
        shadow.draw(painter, kBadge.origin);
        painter.setPen(Qt::NoPen);
        for (const QBrush* brush : {&red, &shade, &sheen}) {
            painter.setBrush(*brush);
            painter.drawRoundedRect(qtRect(kBadge), kRadius, kRadius);
        }
        painter.setPen(ring);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(qtRect(kBadge), kRadius, kRadius);
        line.draw(painter, kBadge);
    }
}

} // namespace

void addBadgeBenchmarks()
{
    addTable({kTable, "Badges",
        "ZRDrawBadge with a count in 12 pixels, at the same place each time. The peers blur the shadow and "
        "lay "
        "the count out once, before the measurement; the gradients of shade and sheen cover all of the "
        "badge."});
    addBenchmark(kTable, kCase, KorvidCanvas::kLibrary, drawKorvidBadge);
    addBenchmark(kTable, kCase, CairoCanvas::kLibrary, drawCairoBadge);
    addBenchmark(kTable, kCase, QtCanvas::kLibrary, drawQtBadge);
}
