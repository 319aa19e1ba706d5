#include "Gallery.h"

#include "Snapshot.h"

#include <AppKit/AppKit.h>

namespace {

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
    const auto gallery = stageGallery(options);
    const auto watcher = make<WindowWatcher>();
    const auto window = make<NSWindow>(gallery.view->frame(),
        NSWindowStyleMaskTitled | NSWindowStyleMaskClosable | NSWindowStyleMaskMiniaturizable,
        NSBackingStoreBuffered, false);
    window->setTitle("KorvidAppKit Gallery");
    window->setDelegate(watcher);
    window->setContentView(gallery.view);
    window->center();
    window->makeKeyAndOrderFront();
    NSApp->run();
}

} // namespace

std::vector<std::filesystem::path> runGallery(const GalleryOptions& options)
{
    // A folder that cannot be written is refused first: the application takes its time to start. Nothing is
    // held meanwhile, since a process whose window system cannot be reached ends there.
    if (options.snapshotFolder)
        PendingFiles{*options.snapshotFolder};

    auto* application = NSApplication::sharedApplication();
    if (options.appearanceName)
        application->setAppearance(NSAppearance::appearanceNamed(*options.appearanceName));
    if (!options.snapshotFolder && application->hasDisplay()) {
        runWindow(options);
        return {};
    }
    PendingFiles files(options.snapshotFolder.value_or("gallery-snapshots"));
    auto pages = stagePages(options);
    if (options.wants(kWholeGallery))
        pages.push_back(stageGallery(options));
    addSnapshots(files, pages);
    return files.finish();
}
