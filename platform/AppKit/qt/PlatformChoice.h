#pragma once

#include "XConnection.h"

#include <QByteArray>

/// The window system for a QApplication that is about to be made.
struct PlatformChoice {
    /// The Qt platform to ask for; empty leaves the choice to Qt.
    QByteArray name;
    /// Must outlive the making of the application: an X server resets when its last client disconnects, and
    /// drops clients that connect during the reset.
    XConnection connection;
};

/// Chooses a platform on which QApplication starts, since Qt aborts on one that fails: "offscreen" when the
/// environment names no display that can be opened.
///
/// Throws NSException when QT_QPA_PLATFORM names platforms none of which Qt has or can open.
PlatformChoice choosePlatform();
