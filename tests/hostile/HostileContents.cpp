#include "HostilePDFs.h"
#include "support/PDFWriter.h"

#include <random>

namespace {

HostilePDF page(const char* name, std::string content, std::string mediaBox = "0 0 100 100")
{
    return {name, [content = std::move(content), mediaBox = std::move(mediaBox)] {
                return pageWriter(content, "", mediaBox).file();
            }};
}

/// A page whose content is a short text many times over, which is never held as a whole.
HostilePDF repeatingPage(const char* name, std::string text, std::size_t times)
{
    return {name, [text = std::move(text), times] {
                return pageWriterWithDeflatedContent(deflated(text, times)).file();
            }};
}

/// `count` segments of `operands` random numbers within the page.
std::string randomSegments(std::size_t count, int operands, const char* name)
{
    std::mt19937 generator(2);
    std::string result = "0 0 m ";
    for (std::size_t i = 0; i < count; ++i) {
        for (int k = 0; k < operands; ++k)
            result += std::to_string(generator() % 1000 / 10) + "." + std::to_string(generator() % 10) + " ";
        result += name;
    }
    return result;
}

/// Squares that each lie inside the one before, from both rules' point of view a chequered board.
std::string nestedSquares(int count)
{
    std::string result;
    for (int i = 0; i < count; ++i) {
        const auto inset = std::to_string(i * 50.0 / count);
        const auto size = std::to_string(100 - i * 100.0 / count);
        result += inset + " " + inset + " " + size + " " + size + " re ";
    }
    return result + "f*";
}

} // namespace

std::vector<HostilePDF> hostileContents()
{
    return {
        repeatingPage("content of 230 megabytes", repeated("0 0 1 1 re f\n", 1'000), 18'000),
        repeatingPage("a million fills of the whole page", repeated("0 0 100 100 re f\n", 1'000), 1'000),
        repeatingPage("a million strokes", repeated("9 w 0 0 m 100 100 l S\n", 1'000), 1'000),
        repeatingPage("two million segments in one path", repeated("1 1 l 5 9 l ", 1'000), 2'000),
        page("100,000 saved states", repeated("q ", 100'000) + "0 0 50 50 re f " + repeated("Q ", 100'000)),
        page("100,000 saved clips",
            repeated("q 0 0 90 90 re W n ", 100'000) + "0 0 50 50 re f " + repeated("Q ", 100'000)),
        page("100,000 clips of circles",
            repeated("50 0 m 99 0 99 99 50 99 c 0 99 0 0 50 0 c W n ", 100'000) + "0 0 99 99 re f"),
        page("more states restored than saved", repeated("Q ", 1'000) + "0 0 50 50 re f"),
        page(
            "a box of ten million points", "0 0 1e7 1e7 re f 3 w 0 0 m 1e7 1e7 l S", "0 0 10000000 10000000"),
        page("a box a billion times as wide as high", "0 0 1e9 1 re f", "0 0 1000000000 1"),
        page("a box of numbers that are none", "0 0 9 9 re f", "nan inf -1e999 1e999"),
        page("a box of huge numbers", "0 0 9 9 re f", "99999999999999999999 0 0 99999999999999999999"),
        page("tiny dashes", repeated("[0.00001 0.00001] 0 d 5 w 0 0 m 100 100 l S ", 50)),
        page("dashes along a line of 200,000 kilometres", "[1 1] 0 d 1 w -100000000 50 m 100000000 50 l S"),
        page("round dashes over each other",
            "1 J [.2 1.4] 0 d 25 w 10 10 m " + repeated("90 40 l 10 60 l ", 150) + "S"),
        page("a huge phase of dashes",
            "[1.8 1.8] 96636760 d 1 w 0 50 m 100 50 l S [3 1] -1e9 d 0 9 m 100 9 l S"),
        page("dashes of 100,000 lengths", "[" + repeated(".1 ", 100'000) + "] 0 d 1 w 0 50 m 100 50 l S"),
        page("dashes around curves",
            "[.06 .06] 0 d .1 w " + repeated("0 0 m 100 300 0 -300 99 99 c S ", 2'000)),
        page("coordinates beyond all numbers",
            "5 w -1e30 -1e30 m 1e30 1e30 l S -999999999 0 m 999999999 50 l 999999999 -50 l f "
            "1e9 0 0 1e9 0 0 cm 1e9 0 0 1e9 0 0 cm 0 0 1 1 re f 0 0 m 1 1 l S"),
        page("matrices that flatten", "0 0 0 0 0 0 cm 0 0 9 9 re f 1e-9 0 0 1e9 0 0 cm 3 w 0 0 m 9 9 l S"),
        page("a stroke of 200,000 crossing lines", randomSegments(200'000, 2, "l ") + "3 w S"),
        page("a stroke of 50,000 crossing curves", "3 w 1 J 1 j " + randomSegments(50'000, 6, "c ") + "S"),
        page("a thick stroke of sharp corners", "0 j 1e9 M 500 w " + randomSegments(5'000, 2, "l ") + "S"),
        page("a fill of 200,000 crossing lines", randomSegments(200'000, 2, "l ") + "f*"),
        page("20,000 nested squares", nestedSquares(20'000)),
        page("100,000 nested arrays", repeated("[", 100'000) + " 0 d 0 0 9 9 re f"),
        page("100,000 nested dictionaries", "/X " + repeated("<< /A ", 100'000) + " BDC 0 0 9 9 re f"),
        page("a million operands", repeated("1 ", 1'000'000) + "0 0 9 9 re f"),
        page("a string that does not end", repeated("(", 1'000'000)),
        page("a name of a megabyte", "/" + std::string(1'000'000, 'x') + " gs 0 0 9 9 re f"),
        page("a number of a megabyte", std::string(1'000'000, '9') + " 0 0 9 re f"),
        page("operators without operands",
            repeated("q cm w J j M d i gs m l c v y h re S f B W n BT Tf Tj TJ Td Tm ET cs scn rg k sh Do BI "
                     "ID EI Q ",
                2'000)),
        page("operands of wrong types",
            repeated("(a) /b [1] << /c 1 >> true null re [(a)] /d d /e Tf << >> gs /f 1 (g) 2 [3] /h c f ",
                2'000)),
    };
}
