#pragma once

#include <QString>

/// The Qt platform to ask for, so that Qt need not abort: "offscreen" when the environment names no display
/// that can be opened, empty to leave the choice to Qt.
QString platformForDisplay();
