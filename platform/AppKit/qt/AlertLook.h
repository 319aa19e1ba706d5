#pragma once

#include <QPalette>
#include <QString>

/// The colours and shapes of alerts, dark or light, whatever the desktop's own style.
QPalette alertPalette(bool isDark);
QString alertStyleSheet(bool isDark);
