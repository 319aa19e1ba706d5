// Fills within clips. cairo intersects the outlines of clips where we multiply masks. QPainter has no cell
// for rectangles between pixels, which it rounds to whole ones.

#include "Benchmarks.h"
#include "CairoCanvas.h"
#include "KorvidCanvas.h"
#include "QtCanvas.h"
#include "Table.h"

#include <QPainterPath>

namespace {

CGRect pixelAligned(Size size)
{
    return CGRectInset(whole(size), 4, 4);
}

/// Crosses the edges of all the clips.
CGRect crossing(Size size)
{
    return CGRectOffset(fractional(size), size.width / 6.0, size.height / 6.0);
}

/// Draws within a rectangle, or the ellipse in it.
template <class Draw> void clipped(KorvidCanvas& canvas, CGRect rect, bool isEllipse, Draw draw)
{
    CGContextSaveGState(canvas.context());
    if (isEllipse)
        CGContextAddEllipseInRect(canvas.context(), rect);
    else
        CGContextAddRect(canvas.context(), rect);
    CGContextClip(canvas.context());
    draw();
    CGContextRestoreGState(canvas.context());
}
template <class Draw> void clipped(CairoCanvas& canvas, CGRect rect, bool isEllipse, Draw draw)
{
    cairo_save(canvas.cairo());
    if (isEllipse)
        addEllipse(canvas.cairo(), rect);
    else
        addRect(canvas.cairo(), rect);
    cairo_clip(canvas.cairo());
    draw();
    cairo_restore(canvas.cairo());
}
template <class Draw> void clipped(QtCanvas& canvas, CGRect rect, bool isEllipse, Draw draw)
{
    QPainter& painter = canvas.painter();
    if (isEllipse) {
        QPainterPath path;
        path.addEllipse(qtRect(rect));
        painter.setClipPath(path);
    } else {
        painter.setClipRect(qtRect(rect));
    }
    draw();
    painter.setClipping(false);
}

struct Clip {
    const char* name;
    CGRect (*rect)(Size);
    bool isEllipse;
};

template <class... Canvases> void addWithin(const Clip& clip)
{
    const auto add = [clip](const std::string& shape, auto draw) {
        addDrawings<Canvases...>("clip", shape + " in " + clip.name, [clip, draw](auto& canvas, Size size) {
            clipped(canvas, clip.rect(size), clip.isEllipse, [&] { draw(canvas, size); });
        });
    };
    add("rectangle", [](auto& canvas, Size size) { fillRect(canvas, whole(size)); });
    add("2 rectangles", [](auto& canvas, Size size) {
        fillRect(canvas, whole(size));
        fillRect(canvas, crossing(size));
    });
    add("ellipse", [](auto& canvas, Size size) { fillEllipse(canvas, crossing(size)); });
}

} // namespace

void addClipBenchmarks()
{
    addTable({"clip", "Fills within clips",
        "The clip is set anew for each drawing, and shapes reach beyond it. cairo intersects the outlines "
        "where "
        "we multiply masks. QPainter rounds the edges of rectangular clips to whole pixels, so it has no "
        "cell for "
        "those between the pixels."});
    addWithin<KorvidCanvas, CairoCanvas, QtCanvas>({"pixel-aligned rectangle", pixelAligned, false});
    addWithin<KorvidCanvas, CairoCanvas>({"rectangle", fractional, false});
    addWithin<KorvidCanvas, CairoCanvas, QtCanvas>({"ellipse", fractional, true});
}
