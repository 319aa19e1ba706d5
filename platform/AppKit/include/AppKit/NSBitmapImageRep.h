#pragma once

#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGImage.h>
#include <Foundation/NSObject.h>

#include <memory>

class NSColor;
class NSData;
class NSDictionary;

/// File formats.
enum NSBitmapImageFileType : NSUInteger {
    NSBitmapImageFileTypePNG = 4,
};

/// The names of colour spaces that a bitmap may be made with.
inline constexpr char NSDeviceRGBColorSpace[] = "NSDeviceRGBColorSpace";
inline constexpr char NSCalibratedRGBColorSpace[] = "NSCalibratedRGBColorSpace"; ///< here the same as sRGB

/// A picture of pixels, 8 bits per component, row 0 on top: from an image or a PNG file, to an image, a PNG
/// file or single colours.
///
/// One thread at a time. Functions that only read may run on several threads at once, as long as none calls
/// `bitmapData` or draws in the picture.
///
///     auto rep = NSBitmapImageRep::initWithCGImage(image);
///     auto png = rep->representationUsingType(NSBitmapImageFileTypePNG, nullptr);
class KORVID_EXPORT NSBitmapImageRep final : public NSObject {
public:
    /// The pixels of `image`, which is retained. Null gives null.
    static RetainPtr<NSBitmapImageRep> initWithCGImage(RetainPtr<::CGImage> image);
    /// The picture in a PNG file: gray, RGB without alpha, or RGBA with premultiplied alpha, in the sRGB
    /// space or, for gray, the device gray space; palettes become RGB and 16 bits become 8. Profiles and
    /// gamma are ignored. Null for null, damaged or truncated data, other formats, more than 2^26 pixels, a
    /// side longer than a million pixels, and when memory runs out.
    static RetainPtr<NSBitmapImageRep> initWithData(const NSData* data);
    /// Pixels to draw in: RGBA with premultiplied alpha, the only layout offered.
    ///
    /// With null `planes` the object owns its memory, all transparent; else `planes[0]` is borrowed memory of
    /// `height` rows, and must outlive this object. `rowBytes` and `pixelBits` may be 0 for 4 × width and 32.
    /// Null for any other layout (8 bits per sample, 4 samples, alpha, not planar, one of the names above),
    /// for a width or height below 1, for more than 2^26 pixels, and when memory runs out.
    static RetainPtr<NSBitmapImageRep> initWithBitmapDataPlanes(unsigned char** planes, NSInteger width,
        NSInteger height, NSInteger bitsPerSample, NSInteger samplesPerPixel, bool hasAlpha, bool isPlanar,
        const NSString& colorSpaceName, NSInteger rowBytes, NSInteger pixelBits);

    /// The width in pixels.
    NSInteger pixelsWide() const;
    /// The height in pixels.
    NSInteger pixelsHigh() const;
    /// In points: one for each pixel.
    ///
    /// Differs: Apple's takes a PNG file's resolution into account.
    CGSize size() const;
    /// True when pixels may be transparent.
    bool hasAlpha() const;
    /// The distance in bytes from one row of `bitmapData()` to the next.
    NSInteger bytesPerRow() const;

    /// The pixels in memory, to read or to change; borrowed, valid as long as this object. A picture made
    /// from an image or file is copied at the first call.
    unsigned char* bitmapData();

    /// The pixels as an immutable image. Free for a picture made from an image or file whose `bitmapData` was
    /// never called; otherwise a copy.
    RetainPtr<::CGImage> CGImage() const;

    /// The colour of a pixel, counted from the top left corner, in the picture's colour space, not
    /// premultiplied. A mask reads as black with its coverage as alpha. Null outside.
    RetainPtr<NSColor> colorAtX(NSInteger x, NSInteger y) const;

    /// The picture as a file: the same picture gives the same bytes.
    ///
    /// Gray stays gray, pictures without alpha become RGB, all others RGBA with straight alpha: reading it
    /// back gives the same premultiplied values. A mask becomes black with its coverage as alpha. The
    /// resolution is 72 dpi. `properties` is ignored and may be null. Null for other
    /// formats, when a side is longer than a million pixels, and when memory runs out. A file of more than
    /// 2^26 pixels is written, but `initWithData` does not read it.
    RetainPtr<NSData> representationUsingType(
        NSBitmapImageFileType type, const NSDictionary* properties) const;

protected:
    ~NSBitmapImageRep() override;

private:
    friend class NSGraphicsContext;
    struct Memory;
    struct Pixels;

    explicit NSBitmapImageRep(RetainPtr<::CGImage> image);
    explicit NSBitmapImageRep(std::unique_ptr<Memory> memory);

    Pixels pixels() const;
    /// A context that draws in the pixels; null unless they are RGBA with premultiplied alpha.
    RetainPtr<::CGContext> createContext();

    RetainPtr<::CGImage> _image;     ///< the picture, unless it is in `_memory`
    std::unique_ptr<Memory> _memory; ///< the picture once it may change
};
