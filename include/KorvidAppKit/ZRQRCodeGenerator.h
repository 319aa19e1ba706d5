#pragma once

#include <CoreGraphics/CGPath.h>
#include <Foundation/NSObject.h>

#include <cstdint>

/// Encodes a string as a QR code symbol, in one of three forms.
///
/// A symbol is a square of 21 to 177 modules a side: versions 1 to 40, 4 x version + 17. The generator
/// chooses the smallest version that holds the string at error correction level medium, and raises the level
/// where that needs no larger version. No form includes the quiet zone, the light margin around a symbol.
///
/// The string is encoded as UTF-8, up to its first NUL character. One that exceeds the capacity of version 40
/// stops the process with an assertion: check untrusted input with `textFits` first. A null string gives a
/// null result and the side length 0. Each `retDim` may be null.
///
///     NSInteger dim = 0;
///     auto path = adopt(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRPathFromText("hello", &dim));
///
/// Stateless: any number of threads may use it at the same time.
class KORVID_EXPORT ZRQRCodeGenerator : public NSObject {
public:
    ZRQRCodeGenerator();

    /// The shared object; never null, never destroyed. Created on the first call, on any thread.
    static ZRQRCodeGenerator* sharedQRCodeGenerator();

    /// Whether a symbol can hold the string: at most 5,596 digits, 3,391 characters if all are digits,
    /// capital letters, spaces or one of "$%*+-./:", otherwise 2,331 bytes of UTF-8. Cheap: encodes nothing.
    /// False for null.
    static bool textFits(const NSString& text);

    /// The symbol in the packed format of the qrcodegen library, 3,918 bytes: the side length in byte 0, then
    /// one bit per module. The caller frees it with `free`. Null for a null string.
    [[nodiscard]] std::uint8_t* copyQRBitsFromText(const NSString& text, NSInteger* retDim) const;

    /// One byte per module, side length x side length of them: rows from the top, each from the left. The
    /// caller frees them with `free`. Null for a null string.
    ///
    /// With `onIsBlack` a dark module is 0x00 and a light one 0xFF, as in an 8-bit gray image; without it,
    /// the other way round.
    [[nodiscard]] std::uint8_t* copyQRBytesFromText(
        const NSString& text, NSInteger* retDim, bool onIsBlack) const;

    /// A path with a closed unit square for each dark module, row by row, each row from the left; adjacent
    /// squares are not merged. The caller releases the path. Null for a null string.
    ///
    /// The origin of the top left module is (0, 0), and y grows downward with the rows: flip the coordinates
    /// to draw in a context whose y axis points up.
    [[nodiscard]] CGMutablePathRef copyQRPathFromText(const NSString& text, NSInteger* retDim) const;

protected:
    ~ZRQRCodeGenerator() override;
};
