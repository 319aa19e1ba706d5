// A line shortened in its middle to a width that changes.

#include "Benchmarks.h"
#include "Canvas.h"
#include "KorvidCanvas.h"
#include "PeerText.h"
#include "QtCanvas.h"
#include "Table.h"

#include <AppKit/NSFont.h>
#include <AppKit/NSStringAttributes.h>
#include <QFontMetricsF>
#include <QString>

#include "views/ZRMiddleTruncation.h"

#include <random>

namespace {

constexpr const char* kTable = "truncate";
constexpr double kFontSize = 13;
constexpr const char* kPlainRule = "plain rule";

/// Words of random letters.
std::string randomWords(std::size_t length)
{
    std::mt19937 random(1);
    std::string text;
    for (std::size_t i = 0; i < length; ++i)
        text += random() % 6 == 0 ? ' ' : char('a' + random() % 26);
    return text;
}

/// Widths around the one that is asked for, as of a window that is resized.
class ChangingWidth {
public:
    explicit ChangingWidth(double width)
        : _width(width)
    {
    }
    double next() { return _width + 0.01 * double(_count++ % 1000); }

private:
    double _width;
    static inline unsigned _count = 0;
};

RetainPtr<NSDictionary> attributes()
{
    return make<NSDictionary>(
        NSDictionary::Map{{NSFontAttributeName, NSFont::fontWithName(kFontFamily, kFontSize)}});
}

void truncateKorvid(benchmark::State& state, const std::string& text, double width)
{
    const auto lineAttributes = attributes();
    const NSString line(text);
    ChangingWidth widths(width);
    for (auto _ : state) {
        const double next = widths.next();
        if (ZRLineWidth(line, lineAttributes) > next)
            benchmark::DoNotOptimize(ZRTruncatedInMiddle(line, next, lineAttributes, {kFontSize, 0}));
    }
}

/// Each candidate measured, longest first.
void truncateByPlainRule(benchmark::State& state, const std::string& text, double width)
{
    const auto lineAttributes = attributes();
    const std::u16string whole(NSString(text).view());
    ChangingWidth widths(width);
    for (auto _ : state) {
        const double next = widths.next();
        std::u16string line = whole;
        while (ZRLineWidth(NSString(std::u16string_view(line)), lineAttributes) > next && line.size() > 2)
            line.replace(line.size() / 2, 2, u"…");
        benchmark::DoNotOptimize(line);
    }
}

void truncateQt(benchmark::State& state, const std::string& text, double width)
{
    QFont font(QString::fromLatin1(kFontFamily));
    font.setPixelSize(int(kFontSize));
    font.setHintingPreference(QFont::PreferNoHinting);
    const QFontMetricsF metrics(font);
    const QString line = QString::fromStdString(text);
    ChangingWidth widths(width);
    for (auto _ : state)
        benchmark::DoNotOptimize(metrics.elidedText(line, Qt::ElideMiddle, widths.next()));
}

} // namespace

void addTruncationBenchmarks()
{
    addTable({kTable, "Shortened lines",
        "A line of random words in 13 pixels, shortened in its middle to a width that changes as in a window "
        "that "
        "is resized, as a ZRTextFieldCell does, beside QFontMetricsF::elidedText. The plain rule takes one "
        "character after the other from the middle and measures what is left; the cell's result is the same. "
        "Lines that were measured for another width come from our cache of layouts, which all programs have.",
        {}});
    for (const std::size_t length : {50U, 500U, 10000U}) {
        const std::string text = randomWords(length);
        for (const double width : {200.0, 2000.0}) {
            if (double(length) * kFontSize < 3 * width)
                continue; // it nearly fits
            const std::string name = std::to_string(length) + " characters/" + std::to_string(int(width));
            addBenchmark(kTable, name, KorvidCanvas::kLibrary,
                [=](benchmark::State& state) { truncateKorvid(state, text, width); });
            addBenchmark(kTable, name, QtCanvas::kLibrary,
                [=](benchmark::State& state) { truncateQt(state, text, width); });
            if (length <= 500)
                addBenchmark(kTable, name, kPlainRule,
                    [=](benchmark::State& state) { truncateByPlainRule(state, text, width); });
        }
    }
}
