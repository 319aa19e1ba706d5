#include "Gallery.h"

#include "GalleryError.h"
#include "GalleryWindow.h"
#include "Snapshot.h"

#include <AppKit/AppKit.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <cstdio>
#include <sys/mman.h>

namespace {

/// Where pictures go when there is no display.
constexpr const char* kDefaultFolder = "gallery-snapshots";

/// Throws GalleryError when the process cannot have the address space that drawing all pages takes, stacks of
/// threads included. Checked in advance, since libraries below end the process when they cannot start a
/// thread.
void checkMemory()
{
    constexpr std::size_t kNeededBytes = std::size_t(192) << 20; // 180 MB were measured
    void* const space =
        mmap(nullptr, kNeededBytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (space == MAP_FAILED)
        throw GalleryError("there is not enough memory: the gallery takes about 300 MB of address space");
    munmap(space, kNeededBytes);
}

/// Ends the application when its one window closes.
class WindowWatcher : public NSObject, public NSWindowDelegate {
public:
    void windowWillClose(NSWindow*) override { NSApp->stop(); }

protected:
    ~WindowWatcher() override = default;
};

/// Shows the gallery until its window is closed.
void runWindow(const GalleryOptions& options)
{
    const auto watcher = make<WindowWatcher>();
    const auto window = make<GalleryWindow>(options);
    window->setDelegate(watcher);
    if (const auto screen = NSScreen::mainScreen())
        window->setContentSize(GalleryWindow::sizeOnScreen(screen->visibleFrame().size));
    window->center();
    window->makeKeyAndOrderFront();
    NSApp->run();
}

/// Writes the pictures of the pages and returns their paths.
std::vector<std::filesystem::path> writePictures(const GalleryOptions& options)
{
    PendingFiles files(options.snapshotFolder.value_or(kDefaultFolder));
    auto pages = stagePages(options);
    if (options.wants(kWholeGallery))
        pages.push_back(stageGallery(options));
    addSnapshots(files, pages, options.scales);
    return files.finish();
}

} // namespace

std::vector<std::filesystem::path> runGallery(const GalleryOptions& options)
{
    checkMemory();
    // Refuses a folder that cannot be written before the application starts, which takes its time.
    if (options.snapshotFolder)
        PendingFiles{*options.snapshotFolder};

    auto* application = NSApplication::sharedApplication();
    if (!ZRGraphics::sharedGraphics()->platformColorNamed("zel-blue-bg"))
        throw GalleryError("the colour catalogue is missing: the program expects it in the folder "
                           "../share/korvid-gallery, or where KORVID_RESOURCES says");
    const bool opensWindow = !options.snapshotFolder && application->hasDisplay();
    if (options.appearanceName || !opensWindow)
        application->setAppearance(
            NSAppearance::appearanceNamed(options.appearanceName.value_or(NSAppearanceNameDarkAqua)));
    if (opensWindow) {
        runWindow(options);
        return {};
    }
    if (!options.snapshotFolder)
        std::fprintf(
            stderr, "gallery: no display can be opened; writing pictures to the folder %s\n", kDefaultFolder);
    return writePictures(options);
}
