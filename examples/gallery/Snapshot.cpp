#include "Snapshot.h"

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSGraphicsContext.h>
#include <CoreGraphics/CGBitmapContext.h>
#include <Foundation/NSData.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// The view as the bytes of a PNG file, `scale` pixels to a point.
RetainPtr<NSData> pngOf(NSView* view, int scale)
{
    const NSSize size = view->bounds().size;
    const auto context =
        adopt(CGBitmapContextCreate(nullptr, static_cast<std::size_t>(std::ceil(size.width * scale)),
            static_cast<std::size_t>(std::ceil(size.height * scale)), 8, 0,
            ZRGraphics::sharedGraphics()->csSRGB(), kCGImageAlphaPremultipliedLast));
    CGContextScaleCTM(context.get(), scale, scale);
    view->displayRectIgnoringOpacity(
        view->bounds(), NSGraphicsContext::graphicsContextWithCGContext(context.get(), false).get());
    const auto image = adopt(CGBitmapContextCreateImage(context.get()));
    return NSBitmapImageRep::initWithCGImage(image.get())
        ->representationUsingType(NSBitmapImageFileTypePNG, nullptr);
}

/// Files that are complete before any of them gets its name; those that never got one go.
class PendingFiles {
public:
    explicit PendingFiles(fs::path folder)
        : _folder(std::move(folder))
    {
        std::error_code error;
        fs::create_directories(_folder, error);
        if (!fs::is_directory(_folder, error))
            throw GalleryError("cannot make the folder '" + _folder.string() + "'");
    }
    PendingFiles(const PendingFiles&) = delete;
    PendingFiles& operator=(const PendingFiles&) = delete;
    ~PendingFiles()
    {
        std::error_code ignored;
        for (const auto& name : _names)
            fs::remove(partial(name), ignored);
    }

    void add(const std::string& name, const NSData& bytes)
    {
        if (fs::is_directory(_folder / name))
            throw GalleryError("cannot write '" + (_folder / name).string() + "': a folder has that name");
        _names.push_back(name);
        if (!bytes.writeToFile(NSString(partial(name).string()), false))
            throw GalleryError("cannot write in the folder '" + _folder.string() + "'");
    }

    /// Gives every file its name and answers their paths.
    std::vector<fs::path> finish()
    {
        std::vector<fs::path> paths;
        for (const auto& name : _names) {
            std::error_code error;
            fs::rename(partial(name), _folder / name, error);
            if (error)
                throw GalleryError("cannot write '" + (_folder / name).string() + "': " + error.message());
            paths.push_back(_folder / name);
        }
        _names.clear();
        return paths;
    }

private:
    fs::path partial(const std::string& name) const { return _folder / ("." + name + ".part"); }

    fs::path _folder;
    std::vector<std::string> _names;
};

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

void writeSnapshots(const std::vector<StagedPage>& pages, const std::string& folder)
{
    PendingFiles files(folder);
    {
        constexpr int kScales[]{1, 2};
        ProgressLine progress(pages.size() * std::size(kScales));
        std::size_t done = 0;
        for (const auto& page : pages) {
            for (const int scale : kScales) {
                const std::string name = page.name + (scale == 1 ? ".png" : "@2x.png");
                progress.show(++done, name);
                files.add(name, *pngOf(page.view.get(), scale));
            }
        }
    }
    for (const auto& path : files.finish())
        std::printf("%s\n", path.c_str());
}
