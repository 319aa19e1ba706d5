// Opens a PDF file and draws its first pages and its last one in every way that the library has, at 32
// pixels. Prints the processor time in milliseconds and the memory in kilobytes that the process has used. A
// file that cannot be opened is no error.
#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/NSURL.h>
#include <KorvidAppKit/KorvidAppKit.h>

#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

namespace {

constexpr std::size_t pixels = 32;
constexpr CGRect destination = {{0, 0}, {pixels, pixels}};

RetainPtr<CGContext> makeContext()
{
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    return adopt(
        CGBitmapContextCreate(nullptr, pixels, pixels, 8, 4 * pixels, space, kCGImageAlphaPremultipliedLast));
}

void drawEveryWay(ZRPDF& pdf, NSInteger page)
{
    const auto context = makeContext();
    const auto color = adopt(CGColorCreateSRGB(1, 0.5, 0, 1));
    pdf.drawPageNumber(page, destination, nullptr, nullptr, context, ZRPDFFillModeFit);
    pdf.drawPageNumber(page, destination, color, context, 1, ZRPDFFillModeFit);
    const auto image = adopt(pdf.createCGImageForPage(page, CGSizeMake(pixels, pixels), nullptr));
}

void draw(ZRPDF& pdf)
{
    const auto count = static_cast<NSInteger>(pdf.numberOfPages());
    for (NSInteger page = 1; page <= std::min<NSInteger>(count, 9); ++page) {
        pdf.cropBoxForPage(page);
        drawEveryWay(pdf, page);
    }
    pdf.cropBoxForPage(count);
    drawEveryWay(pdf, count);
}

} // namespace

int main(int, char** arguments)
{
    if (const auto pdf = ZRPDF::initWithURL(NSURL::fileURLWithPath(arguments[1])))
        draw(*pdf);
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const long milliseconds = (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1000
        + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1000;
    std::printf("%ld %ld\n", milliseconds, usage.ru_maxrss);
}
