// The gallery: every view and service of the library in one window, or as pictures.

#include "Page.h"
#include "Snapshot.h"

#include <AppKit/AppKit.h>
#include <KorvidAppKit/KorvidAppKit.h>

#include <cstdio>

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
    window->setDelegate(watcher.get());
    window->setContentView(gallery.view.get());
    window->center();
    window->makeKeyAndOrderFront();
    NSApp->run();
}

void run(const GalleryOptions& options)
{
    auto* application = NSApplication::sharedApplication();
    if (options.appearanceName)
        application->setAppearance(NSAppearance::appearanceNamed(*options.appearanceName).get());
    if (!options.snapshotFolder && application->hasDisplay()) {
        runWindow(options);
        return;
    }
    auto pages = stagePages(options);
    pages.push_back(stageGallery(options));
    writeSnapshots(pages, options.snapshotFolder.value_or("gallery-snapshots"));
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const auto options = GalleryOptions::parse(argc, argv);
        if (options.help)
            std::printf("%s", GalleryOptions::usage().c_str());
        else
            run(options);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "gallery: %s\n", error.what());
        return 2;
    }
}
