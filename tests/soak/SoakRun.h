#pragma once

#include "MemoryRecord.h"
#include "RandomUser.h"

#include "Foundation/testing/NSLogCapture.h"

#include <QEventLoop>

#include <chrono>
#include <memory>

/// How long a soak run lasts at least, and how fast its user is.
struct SoakOptions {
    std::chrono::milliseconds duration{0};
    int actions = 0;
    std::chrono::milliseconds pause{0}; ///< between two events
    int rounds = 8;                     ///< in each half, at the end of which memory is measured
    unsigned seed = 1;
    /// Whether to fill the library's caches first, so that what they take does not count as growth.
    bool fillsCaches = false;
    bool printsProgress = false;
};

/// A random user's time with the gallery.
///
/// In the first half windows come and go: each round ends with the window closed, and memory is measured
/// without one. In the second half one window stays open, and memory is measured after all its pages have
/// been shown in turn. Both happen in rounds of the same length.
class SoakRun {
public:
    explicit SoakRun(const SoakOptions& options);
    ~SoakRun();

    /// Runs to the end. Serves the event loop meanwhile.
    void run();

    /// What was logged, by the library or by Qt.
    std::vector<std::string> messages() const { return _log.messages(); }
    const MemoryRecord& withoutWindow() const { return _withoutWindow; }
    const MemoryRecord& withWindow() const { return _withWindow; }
    int actions() const { return _user.actions(); }
    std::size_t pagesShown() const { return _pagesShown; }

private:
    void runRound(bool closesWindow);
    bool isRoundOver() const;
    void scheduleNext();
    void serveEvents();
    void openWindow();
    void closeWindow();
    /// Shows all pages in the default size and appearance.
    void tour();

    const SoakOptions _options;
    NSLogCapture _log;
    RandomUser _user;
    RetainPtr<GalleryWindow> _window;
    QEventLoop _loop;
    bool _isActing = false;
    std::chrono::steady_clock::time_point _roundEnd;
    int _actionsAtRoundEnd = 0;
    MemoryRecord _withoutWindow, _withWindow;
    std::size_t _pagesShown = 0;
};
