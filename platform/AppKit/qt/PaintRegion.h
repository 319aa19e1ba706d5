#pragma once

#include <QRegion>

#include <vector>

/// A region that contains the rectangles: exactly them if they are few, else with up to some rows more above
/// and below them. Rectangles in rows of their own would make a region of many more rectangles, and Qt goes
/// through all of them several times for each paint.
QRegion paintRegion(const std::vector<QRect>& rects);
