// PDF icons: opened and drawn for the first time, drawn again, and tinted.

#include <poppler.h> // before Qt, whose keywords are names in GLib

#include "Benchmarks.h"
#include "CairoCanvas.h"
#include "DetailedIcons.h"
#include "KorvidCanvas.h"
#include "QtCanvas.h"
#include "Table.h"

#include <support/IconPDFs.h>

#include <QBuffer>
#include <QPdfDocument>

#include <algorithm>

namespace {

constexpr const char* kTable = "PDF";
constexpr const char* kPoppler = "Poppler with cairo";
constexpr double kPoints = 24; // the side of an icon

std::vector<std::string> makeFiles()
{
    std::vector<std::string> files;
    for (auto& icon : iconPDFs())
        files.push_back(std::move(icon.file));
    return files;
}

const std::vector<std::string>& files()
{
    static const auto result = makeFiles();
    return result;
}

/// Enough for one in each row of a long list.
std::vector<std::string> makeDetailedFiles()
{
    std::vector<std::string> files;
    for (unsigned seed = 0; seed < 500; ++seed)
        files.push_back(detailedIconPDF(seed));
    return files;
}

const std::vector<std::string>& detailedFiles()
{
    static const auto result = makeDetailedFiles();
    return result;
}

// KorvidAppKit

RetainPtr<CGPDFDocument> openKorvid(const std::string& file)
{
    const auto provider = adopt(CGDataProviderCreateWithData(nullptr, file.data(), file.size(), nullptr));
    return adopt(CGPDFDocumentCreateWithProvider(provider));
}

class KorvidIcon {
public:
    explicit KorvidIcon(const std::string& file)
        : _document(openKorvid(file))
    {
    }

    void draw(KorvidCanvas& canvas, int pixels) const
    {
        CGContextSaveGState(canvas.context());
        CGContextScaleCTM(canvas.context(), pixels / kPoints, pixels / kPoints);
        CGContextDrawPDFPage(canvas.context(), CGPDFDocumentGetPage(_document, 1));
        CGContextRestoreGState(canvas.context());
    }
    /// Fills the icon's shape with the canvas's colour.
    void drawTinted(KorvidCanvas& canvas, int pixels)
    {
        const auto side = std::size_t(pixels);
        const auto mask =
            adopt(CGBitmapContextCreate(nullptr, side, side, 8, side, nullptr, kCGImageAlphaOnly));
        CGContextScaleCTM(mask, pixels / kPoints, pixels / kPoints);
        CGContextDrawPDFPage(mask, CGPDFDocumentGetPage(_document, 1));
        const auto image = adopt(CGBitmapContextCreateImage(mask));
        const CGRect all = CGRectMake(0, 0, pixels, pixels);
        CGContextSaveGState(canvas.context());
        CGContextClipToMask(canvas.context(), all, image);
        CGContextFillRect(canvas.context(), all);
        CGContextRestoreGState(canvas.context());
    }

private:
    RetainPtr<CGPDFDocument> _document;
};

// Qt

class QtIcon {
public:
    explicit QtIcon(const std::string& file)
        : _bytes(QByteArray::fromRawData(file.data(), qsizetype(file.size())))
        , _buffer(std::make_unique<QBuffer>(&_bytes))
        , _document(std::make_unique<QPdfDocument>(nullptr))
    {
        _buffer->open(QIODevice::ReadOnly);
        _document->load(_buffer.get());
    }

    void draw(QtCanvas& canvas, int pixels) { canvas.painter().drawImage(0, 0, image(pixels)); }
    void drawTinted(QtCanvas& canvas, int pixels)
    {
        QImage tinted = image(pixels);
        QPainter painter(&tinted);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(tinted.rect(), canvas.color());
        painter.end();
        canvas.painter().drawImage(0, 0, tinted);
    }

private:
    QImage image(int pixels) { return _document->render(0, {pixels, pixels}); }

    QByteArray _bytes;
    std::unique_ptr<QBuffer> _buffer;
    std::unique_ptr<QPdfDocument> _document;
};

// Poppler

struct GlibUnref {
    void operator()(void* object) const { g_object_unref(object); }
};
template <class T> using GlibPtr = std::unique_ptr<T, GlibUnref>;

class PopplerIcon {
public:
    explicit PopplerIcon(const std::string& file)
    {
        GBytes* bytes = g_bytes_new_static(file.data(), file.size());
        _document.reset(poppler_document_new_from_bytes(bytes, nullptr, nullptr));
        g_bytes_unref(bytes);
        _page.reset(poppler_document_get_page(_document.get(), 0));
    }

    void draw(CairoCanvas& canvas, int pixels) const { draw(canvas.cairo(), pixels); }
    void drawTinted(CairoCanvas& canvas, int pixels) const
    {
        cairo_push_group_with_content(canvas.cairo(), CAIRO_CONTENT_ALPHA);
        draw(canvas.cairo(), pixels);
        cairo_pattern_t* mask = cairo_pop_group(canvas.cairo());
        cairo_mask(canvas.cairo(), mask);
        cairo_pattern_destroy(mask);
    }

private:
    void draw(cairo_t* cairo, int pixels) const
    {
        cairo_save(cairo);
        cairo_scale(cairo, pixels / kPoints, pixels / kPoints);
        poppler_page_render(_page.get(), cairo);
        cairo_restore(cairo);
    }

    GlibPtr<PopplerDocument> _document;
    GlibPtr<PopplerPage> _page;
};

using Files = const std::vector<std::string>&;

template <class Canvas, class Icon> void drawIcons(benchmark::State& state, Files files, int pixels)
{
    Canvas canvas({pixels, pixels});
    std::vector<Icon> icons(files.begin(), files.end());
    for (auto& icon : icons)
        icon.draw(canvas, pixels);
    for (auto _ : state) {
        for (auto& icon : icons)
            icon.draw(canvas, pixels);
    }
    setItems(state, icons.size());
}

template <class Canvas, class Icon> void drawTintedIcons(benchmark::State& state, Files files, int pixels)
{
    Canvas canvas({pixels, pixels});
    std::vector<Icon> icons(files.begin(), files.end());
    for (auto& icon : icons)
        icon.drawTinted(canvas, pixels);
    for (auto _ : state) {
        for (auto& icon : icons)
            icon.drawTinted(canvas, pixels);
    }
    setItems(state, icons.size());
}

/// The first use of an icon, and its end.
template <class Canvas, class Icon> void openIcons(benchmark::State& state, Files files, int pixels)
{
    Canvas canvas({pixels, pixels});
    for (auto _ : state) {
        for (const auto& file : files)
            Icon(file).draw(canvas, pixels);
    }
    setItems(state, files.size());
}

/// The first drawing of icons that are open.
template <class Canvas, class Icon> void drawFirst(benchmark::State& state, Files files, int pixels)
{
    Canvas canvas({pixels, pixels});
    std::vector<Icon> icons;
    for (auto _ : state) {
        state.PauseTiming();
        icons = std::vector<Icon>(files.begin(), files.end());
        state.ResumeTiming();
        for (auto& icon : icons)
            icon.draw(canvas, pixels);
    }
    setItems(state, files.size());
}

using Run = void (*)(benchmark::State&, Files, int);

struct Runs {
    Run korvid;
    Run qt;
    Run poppler;
};

constexpr Runs kOpen{
    openIcons<KorvidCanvas, KorvidIcon>, openIcons<QtCanvas, QtIcon>, openIcons<CairoCanvas, PopplerIcon>};
constexpr Runs kFirst{
    drawFirst<KorvidCanvas, KorvidIcon>, drawFirst<QtCanvas, QtIcon>, drawFirst<CairoCanvas, PopplerIcon>};
constexpr Runs kDraw{
    drawIcons<KorvidCanvas, KorvidIcon>, drawIcons<QtCanvas, QtIcon>, drawIcons<CairoCanvas, PopplerIcon>};
constexpr Runs kTint{drawTintedIcons<KorvidCanvas, KorvidIcon>, drawTintedIcons<QtCanvas, QtIcon>,
    drawTintedIcons<CairoCanvas, PopplerIcon>};

/// The time of one icon, as the mean over all icons.
void addCase(const std::string& name, Files (*files)(), int pixels, const Runs& runs)
{
    const auto add = [&](const char* contender, Run run) {
        addBenchmark(kTable, name + "/" + std::to_string(pixels) + "px", contender,
            [=](benchmark::State& state) { run(state, files(), pixels); });
    };
    add(KorvidCanvas::kLibrary, runs.korvid);
    add(QtCanvas::kLibrary, runs.qt);
    add(kPoppler, runs.poppler);
}

} // namespace

void addPDFBenchmarks()
{
    addTable({kTable, "PDF icons",
        "31 icons of 24 points: paths, strokes, gradients, masks, groups, tilings and images; and 500 "
        "detailed ones, "
        "all different, of 60 shapes in 2 kB each. The time is the mean of one icon. Qt PDF draws each edge "
        "on whole "
        "pixels at the sizes of icons, the others where it is. \"Open\" includes reading the file from "
        "memory, the "
        "first drawing of its page and closing it; \"first\" is that drawing alone."});
    for (const int pixels : {16, 32, 64, 256}) {
        addCase("open", files, pixels, kOpen);
        addCase("draw", files, pixels, kDraw);
        addCase("tint", files, pixels, kTint);
    }
    addCase("first", files, 32, kFirst);
    addCase("detailed/open", detailedFiles, 32, kOpen);
    addCase("detailed/first", detailedFiles, 32, kFirst);
    addCase("detailed/draw", detailedFiles, 32, kDraw);
    addCase("detailed/tint", detailedFiles, 32, kTint);
    addCase("detailed/draw", detailedFiles, 256, kDraw);
}
