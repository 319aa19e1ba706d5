#include "Snapshot.h"

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSGraphicsContext.h>
#include <CoreGraphics/CGBitmapContext.h>
#include <Foundation/NSData.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace {

/// The view as the bytes of a PNG file, `scale` pixels to a point.
RetainPtr<NSData> pngOf(NSView* view, int scale)
{
    const NSSize size = view->bounds().size;
    const auto context =
        adopt(CGBitmapContextCreate(nullptr, static_cast<std::size_t>(std::ceil(size.width * scale)),
            static_cast<std::size_t>(std::ceil(size.height * scale)), 8, 0,
            ZRGraphics::sharedGraphics()->csSRGB(), kCGImageAlphaPremultipliedLast));
    CGContextScaleCTM(context, scale, scale);
    view->displayRectIgnoringOpacity(
        view->bounds(), NSGraphicsContext::graphicsContextWithCGContext(context, false).get());
    const auto image = adopt(CGBitmapContextCreateImage(context));
    return NSBitmapImageRep::initWithCGImage(image)->representationUsingType(
        NSBitmapImageFileTypePNG, nullptr);
}

/// A line on the terminal that is written over; nothing where standard error is no terminal.
class ProgressLine {
public:
    explicit ProgressLine(std::size_t total)
        : _total(total)
    {
    }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine()
    {
        if (_shown)
            std::fprintf(stderr, "\r\033[K");
    }

    void show(std::size_t done, const std::string& name)
    {
        if (!isatty(STDERR_FILENO))
            return;
        _shown = true;
        std::fprintf(stderr, "\r\033[K%zu of %zu: %s", done, _total, name.c_str());
    }

private:
    std::size_t _total;
    bool _shown = false;
};

} // namespace

void addSnapshots(PendingFiles& files, const std::vector<StagedPage>& pages)
{
    constexpr int kScales[]{1, 2};
    ProgressLine progress(pages.size() * std::size(kScales));
    std::size_t done = 0;
    for (const auto& page : pages) {
        for (const int scale : kScales) {
            const std::string name = page.name + (scale == 1 ? ".png" : "@2x.png");
            progress.show(++done, name);
            files.add(name, *pngOf(page.view, scale));
        }
    }
}
