#pragma once

#include "CoreGraphics/raster/ImageKernels.h"

/// Columns of a row, the end excluded.
struct SampleColumns {
    int begin;
    int end;

    bool isEmpty() const { return begin >= end; }
};

/// Where the samples of a drawn row lie along an axis of an image, in pixels: at `start` for column 0, and
/// `step` further for each one after it.
struct SampleLine {
    double start;
    double step;

    double at(int column) const { return start + column * step; }
};

/// The samples of a drawn row in an image.
struct SampleRow {
    SampleLine x;
    SampleLine y;

    /// The columns whose samples lie between 0 and a width and a height, as far as `columns` contain them.
    /// Those at either end may be left out. All positions from column 0 on fit into SampleSteps then.
    SampleColumns within(double width, double height, const SampleColumns& columns) const;
    /// The positions of the samples from `column` on, which is one of those within a size.
    SampleSteps steps(int column) const;
};
