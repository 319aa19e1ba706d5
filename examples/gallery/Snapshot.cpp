#include "Snapshot.h"

#include "GalleryError.h"

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSGraphicsContext.h>
#include <CoreGraphics/CGContext.h>
#include <Foundation/NSData.h>
#include <Foundation/NSFormat.h>

#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace {

/// The view as a PNG file, `scale` pixels to a point; null when memory runs out. Only whole pixels are shown:
/// at the top and at the right, a part of one is left out.
RetainPtr<NSData> pngOf(NSView* view, CGFloat scale)
{
    const NSSize size = view->bounds().size;
    const auto picture = NSBitmapImageRep::initWithBitmapDataPlanes(nullptr,
        static_cast<NSInteger>(std::floor(size.width * scale)),
        static_cast<NSInteger>(std::floor(size.height * scale)), 8, 4, true, false, NSCalibratedRGBColorSpace,
        0, 0);
    if (!picture)
        return nullptr;
    const auto context = NSGraphicsContext::graphicsContextWithBitmapImageRep(picture);
    CGContextScaleCTM(context->CGContext(), scale, scale);
    view->displayRectIgnoringOpacity(view->bounds(), context);
    return picture->representationUsingType(NSBitmapImageFileTypePNG, nullptr);
}

/// A line of progress on the terminal, each in place of the last; nothing unless standard error is a
/// terminal.
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

std::string snapshotName(const std::string& page, CGFloat scale)
{
    if (scale == 1)
        return page + ".png";
    return page + NSString::stringWithFormat("@%gx.png", scale).UTF8String();
}

void addSnapshots(
    PendingFiles& files, const std::vector<StagedPage>& pages, const std::vector<CGFloat>& scales)
{
    ProgressLine progress(pages.size() * scales.size());
    std::size_t done = 0;
    for (const auto& page : pages) {
        for (const CGFloat scale : scales) {
            const std::string name = snapshotName(page.name, scale);
            progress.show(++done, name);
            const auto png = pngOf(page.view, scale);
            if (!png)
                throw GalleryError("there is not enough memory for the picture " + name);
            files.add(name, *png);
        }
    }
}
