#pragma once

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSGeometry.h>
#include <Foundation/NSData.h>

#include <array>
#include <string>

/// Red, green, blue and alpha from 0 to 255.
using Components = std::array<int, 4>;

/// An opaque image file whose pixels are addressed in the view's coordinates.
class Picture {
public:
    Picture(const std::string& path, int scale)
        : _picture(NSBitmapImageRep::initWithData(NSData::dataWithContentsOfFile(NSString(path)).get()))
        , _scale(scale)
    {
    }

    NSSize size() const
    {
        return NSMakeSize(static_cast<CGFloat>(_picture->pixelsWide()) / _scale,
            static_cast<CGFloat>(_picture->pixelsHigh()) / _scale);
    }
    /// The pixel above and to the right of a point.
    Components at(CGFloat x, CGFloat y) const
    {
        const auto column = static_cast<NSInteger>(x * _scale);
        const auto row = _picture->pixelsHigh() - 1 - static_cast<NSInteger>(y * _scale);
        const unsigned char* pixel = _picture->bitmapData() + row * _picture->bytesPerRow() + 4 * column;
        return {pixel[0], pixel[1], pixel[2], pixel[3]};
    }

private:
    RetainPtr<NSBitmapImageRep> _picture;
    int _scale;
};
