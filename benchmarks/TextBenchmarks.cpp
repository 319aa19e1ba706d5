// Lines of text: at rest, moving, changing, and a list of them that scrolls.

#include "Benchmarks.h"
#include "KorvidCanvas.h"
#include "PeerText.h"
#include "Table.h"

#include <CoreText/CoreText.h>

#include <random>

namespace {

constexpr const char* kTable = "text";
constexpr int kLetterCounts[]{8, 30, 100};
constexpr int kFontSizes[]{9, 13};

/// More lines than any library caches.
constexpr std::size_t kManyLines = 32768;

/// Words of random letters.
std::string randomText(std::mt19937& random, int letters)
{
    std::string text;
    for (int i = 0; i < letters; ++i) {
        const bool isBetweenLetters = i > 0 && i + 1 < letters && text.back() != ' ';
        text += isBetweenLetters && random() % 6 == 0 ? ' ' : char('a' + random() % 26);
    }
    return text;
}

/// Different lines, in each library's own kind of string.
template <class String> std::vector<String> randomLines(std::size_t count, int letters)
{
    std::mt19937 random(1);
    std::vector<String> lines;
    lines.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::string text = randomText(random, letters);
        if constexpr (std::is_same_v<String, QString>)
            lines.push_back(QString::fromStdString(text));
        else
            lines.emplace_back(text);
    }
    return lines;
}

/// Lines of which none returns before many others, also when a benchmark is repeated.
template <class String> class ChangingLines {
public:
    explicit ChangingLines(int letters)
        : _lines(randomLines<String>(kManyLines, letters))
    {
    }
    const String& next() { return _lines[_next++ % kManyLines]; }

private:
    std::vector<String> _lines;
    static inline std::size_t _next = 0;
};

struct Case {
    int letters;
    int fontSize; ///< in pixels
    bool moves = false;

    Size canvas() const { return {letters * fontSize, 2 * fontSize}; }
    TextStyle style() const { return {double(fontSize)}; }
};

/// The start of a line's baseline, on pixels.
constexpr CGPoint kStart{3, 6};

// KorvidAppKit

class KorvidLines {
public:
    explicit KorvidLines(int fontSize)
    {
        const auto font = adopt(CTFontCreateWithName(kFontFamily, fontSize));
        _attributes->setObject(const_cast<CTFont*>(font.get()), kCTFontAttributeName);
    }
    RetainPtr<const CTLine> line(const NSString& text) const
    {
        return adopt(CTLineCreateWithAttributedString(make<NSAttributedString>(text, _attributes).get()));
    }

private:
    RetainPtr<NSMutableDictionary> _attributes = make<NSMutableDictionary>();
};

void drawKorvidLine(benchmark::State& state, Case test)
{
    const KorvidCanvas canvas(test.canvas());
    const auto line = KorvidLines(test.fontSize).line(randomLines<NSString>(1, test.letters)[0]);
    Motion motion(test.moves);
    for (auto _ : state) {
        CGContextSetTextPosition(canvas.context(), kStart.x + motion.next(), kStart.y);
        CTLineDraw(line, canvas.context());
    }
}

void drawKorvidChanges(benchmark::State& state, Case test)
{
    const KorvidCanvas canvas(test.canvas());
    const KorvidLines lines(test.fontSize);
    ChangingLines<NSString> texts(test.letters);
    for (auto _ : state) {
        CGContextSetTextPosition(canvas.context(), kStart.x, kStart.y);
        const auto line = lines.line(texts.next());
        CTLineDraw(line, canvas.context());
    }
}

// Pango

class PangoLines {
public:
    PangoLines(const CairoCanvas& canvas, int fontSize)
        : _cairo(canvas.cairo())
        , _layout(pango_cairo_create_layout(_cairo))
    {
        PangoFontDescription* font = pango_font_description_from_string(kFontFamily);
        pango_font_description_set_absolute_size(font, fontSize * PANGO_SCALE);
        pango_layout_set_font_description(_layout, font);
        pango_font_description_free(font);
        cairo_set_source_rgb(_cairo, 0, 0, 0);
    }
    PangoLines(const PangoLines&) = delete;
    PangoLines& operator=(const PangoLines&) = delete;
    ~PangoLines() { g_object_unref(_layout); }

    void setText(const std::string& text) { pango_layout_set_text(_layout, text.data(), int(text.size())); }
    void draw(double x, double y) const
    {
        cairo_move_to(_cairo, x, y);
        pango_cairo_show_layout(_cairo, _layout);
    }

private:
    cairo_t* _cairo;
    PangoLayout* _layout;
};

void drawPangoLine(benchmark::State& state, Case test)
{
    const CairoCanvas canvas(test.canvas());
    PangoLines line(canvas, test.fontSize);
    line.setText(randomLines<std::string>(1, test.letters)[0]);
    Motion motion(test.moves);
    for (auto _ : state)
        line.draw(kStart.x + motion.next(), kStart.y);
}

void drawPangoChanges(benchmark::State& state, Case test)
{
    const CairoCanvas canvas(test.canvas());
    PangoLines line(canvas, test.fontSize);
    ChangingLines<std::string> texts(test.letters);
    for (auto _ : state) {
        line.setText(texts.next());
        line.draw(kStart.x, kStart.y);
    }
}

// Qt

void prepare(QtCanvas& canvas, const TextStyle& style)
{
    canvas.painter().setFont(QtLine("", style).font());
    canvas.painter().setPen(Qt::black);
}

void drawQtLine(benchmark::State& state, Case test)
{
    QtCanvas canvas(test.canvas());
    prepare(canvas, test.style());
    const QString text = randomLines<QString>(1, test.letters)[0];
    Motion motion(test.moves);
    for (auto _ : state)
        canvas.painter().drawText(QPointF(kStart.x + motion.next(), kStart.y + test.fontSize), text);
}

void drawQtStaticLine(benchmark::State& state, Case test)
{
    QtCanvas canvas(test.canvas());
    prepare(canvas, test.style());
    const QtLine line(randomLines<std::string>(1, test.letters)[0].c_str(), test.style());
    Motion motion(test.moves);
    for (auto _ : state)
        line.draw(canvas.painter(), CGRectOffset(whole(test.canvas()), motion.next(), 0));
}

void drawQtChanges(benchmark::State& state, Case test)
{
    QtCanvas canvas(test.canvas());
    prepare(canvas, test.style());
    ChangingLines<QString> texts(test.letters);
    for (auto _ : state)
        canvas.painter().drawText(QPointF(kStart.x, kStart.y + test.fontSize), texts.next());
}

// A list that scrolls

constexpr std::size_t kRows = 500;
constexpr int kRowHeight = 16;
constexpr Size kList{240, 600};
constexpr int kRowLetters = 30;
constexpr int kListFontSize = 13;
constexpr Case kListCase{kRowLetters, kListFontSize};

/// Calls `draw(row, y)` for the visible rows of a list that scrolls by 3.3 pixels a frame.
template <class Draw> void scroll(benchmark::State& state, Draw draw)
{
    constexpr double kStep = 3.3;
    double offset = 0;
    for (auto _ : state) {
        const auto first = std::size_t(offset / kRowHeight);
        for (std::size_t row = first; row < kRows && double(row) * kRowHeight < offset + kList.height; ++row)
            draw(row, double(row) * kRowHeight - offset);
        offset = std::fmod(offset + kStep, double(kRows) * kRowHeight - kList.height);
    }
}

void scrollKorvidList(benchmark::State& state)
{
    const KorvidCanvas canvas(kList);
    const KorvidLines lines(kListFontSize);
    std::vector<RetainPtr<const CTLine>> rows;
    for (const NSString& text : randomLines<NSString>(kRows, kRowLetters))
        rows.push_back(lines.line(text));
    scroll(state, [&](std::size_t row, double y) {
        CGContextSetTextPosition(canvas.context(), kStart.x, kList.height - y - kListFontSize);
        CTLineDraw(rows[row], canvas.context());
    });
}

void scrollPangoList(benchmark::State& state)
{
    const CairoCanvas canvas(kList);
    std::vector<std::unique_ptr<PangoLines>> rows;
    for (const std::string& text : randomLines<std::string>(kRows, kRowLetters))
        rows.emplace_back(std::make_unique<PangoLines>(canvas, kListFontSize))->setText(text);
    scroll(state, [&](std::size_t row, double y) { rows[row]->draw(kStart.x, y); });
}

void scrollQtList(benchmark::State& state)
{
    QtCanvas canvas(kList);
    prepare(canvas, kListCase.style());
    const auto rows = randomLines<QString>(kRows, kRowLetters);
    scroll(state, [&](std::size_t row, double y) {
        canvas.painter().drawText(QPointF(kStart.x, y + kListFontSize), rows[row]);
    });
}

using Run = void (*)(benchmark::State&, Case);

void addCase(const std::string& name, const Case& test, const char* contender, Run run)
{
    addBenchmark(kTable, name, contender, [test, run](benchmark::State& state) { run(state, test); });
}

} // namespace

void addTextBenchmarks()
{
    constexpr const char* kQtStatic = "Qt, QStaticText";
    addTable({kTable, "Text",
        "Lines of 8, 30 and 100 letters in black. Those at rest are drawn at one place repeatedly, moving "
        "ones "
        "at another subpixel position each time, to the right; both are laid out once, but for Qt's "
        "drawText, "
        "which has no other way. Changing lines differ each time: their layout is measured, too. A list of "
        "500 "
        "rows of 30 letters scrolls by 3.3 pixels a frame, of which 38 rows are visible; the time is a "
        "frame's."});
    for (const int fontSize : kFontSizes) {
        for (const int letters : kLetterCounts) {
            const std::string size = "/" + std::to_string(letters) + "/" + std::to_string(fontSize) + "px";
            for (const bool moves : {false, true}) {
                const Case test{letters, fontSize, moves};
                const std::string name = (moves ? "moving" : "at rest") + size;
                addCase(name, test, KorvidCanvas::kLibrary, drawKorvidLine);
                addCase(name, test, CairoCanvas::kLibrary, drawPangoLine);
                addCase(name, test, QtCanvas::kLibrary, drawQtLine);
                addCase(name, test, kQtStatic, drawQtStaticLine);
            }
            const Case test{letters, fontSize};
            addCase("changing" + size, test, KorvidCanvas::kLibrary, drawKorvidChanges);
            addCase("changing" + size, test, CairoCanvas::kLibrary, drawPangoChanges);
            addCase("changing" + size, test, QtCanvas::kLibrary, drawQtChanges);
        }
    }
    const std::string list = "scrolling list";
    addBenchmark(kTable, list, KorvidCanvas::kLibrary, scrollKorvidList);
    addBenchmark(kTable, list, CairoCanvas::kLibrary, scrollPangoList);
    addBenchmark(kTable, list, QtCanvas::kLibrary, scrollQtList);
}
