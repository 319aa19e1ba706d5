#pragma once

/// An sRGB colour; components from 0 to 1.
struct PDFRGB {
    float r = 0;
    float g = 0;
    float b = 0;

    bool operator==(const PDFRGB&) const = default;
};
