#pragma once

#include <CoreGraphics/CGPath.h>
#include <Foundation/NSObject.h>

#include <cstdint>

/// Turns a text into a QR code symbol, in three forms.
///
/// A symbol is a square of 21 to 177 modules a side: versions 1 to 40, 4 x version + 17. The smallest one
/// that holds the text is taken, at error correction level medium, or a higher level where that costs no
/// larger symbol. The light margin around a symbol is in none of the forms.
///
/// The text is encoded as UTF-8, up to its first NUL character. A text beyond the capacity of version 40
/// stops the process by an assertion: ask `textFits` first where a text comes from outside. A null text gives
/// a null result and the side length 0. Wherever a side length is handed back, a null pointer is accepted.
///
///     NSInteger dim = 0;
///     auto path = adopt(ZRQRCodeGenerator::sharedQRCodeGenerator()->copyQRPathFromText("hello", &dim));
///
/// Holds no state: any thread, several at a time.
class KORVID_EXPORT ZRQRCodeGenerator : public NSObject {
public:
    ZRQRCodeGenerator();

    /// The shared object; never null, never destroyed. Made once, whichever thread comes first.
    static ZRQRCodeGenerator* sharedQRCodeGenerator();

    /// Whether a symbol can hold the text: at most 5,596 digits, 3,391 characters of digits, capital letters,
    /// space and `$%*+-./:`, or 2,331 bytes of UTF-8. Encodes nothing, so it is cheap. False for null.
    static bool textFits(const NSString& text);

    /// The symbol in the form of the qrcodegen library, 3,918 bytes long: the side length in byte 0, then one
    /// bit per module. The caller frees it with `free`.
    [[nodiscard]] std::uint8_t* copyQRBitsFromText(const NSString& text, NSInteger* retDim) const;

    /// One byte per module, rows from the top, each from the left, side length x side length of them. The
    /// caller frees them with `free`.
    ///
    /// With `onIsBlack` a dark module is 0x00 and a light one 0xFF, black and white of an 8-bit gray image;
    /// without it, the other way round.
    [[nodiscard]] std::uint8_t* copyQRBytesFromText(
        const NSString& text, NSInteger* retDim, bool onIsBlack) const;

    /// A closed square of side 1 for each dark module, row after row, each from the left; neighbours are not
    /// merged. The caller releases the path.
    ///
    /// The top left module has its origin at (0, 0), and y grows with the rows: on a canvas whose y points up
    /// the drawing code flips it.
    [[nodiscard]] CGMutablePathRef copyQRPathFromText(const NSString& text, NSInteger* retDim) const;

protected:
    ~ZRQRCodeGenerator() override;
};
