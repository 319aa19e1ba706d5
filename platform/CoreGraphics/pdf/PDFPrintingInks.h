#pragma once

#include "CoreGraphics/pdf/PDFRGB.h"

/// The sRGB colour of four printing inks on coated paper, each from 0 (none) to 1 (solid), linear in each
/// ink: exact for no ink and for solid ones, an approximation between.
PDFRGB colorOfPrintingInks(double cyan, double magenta, double yellow, double black);
