#include <KorvidAppKit/ZRQRCodeGenerator.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <qrcodegen.h>

namespace {

struct Free {
    void operator()(std::uint8_t* bytes) const noexcept { std::free(bytes); }
};
using Bytes = std::unique_ptr<std::uint8_t[], Free>;

/// A zero-filled buffer large enough for any symbol.
Bytes makeSymbolBuffer()
{
    return Bytes(static_cast<std::uint8_t*>(std::calloc(qrcodegen_BUFFER_LEN_MAX, 1)));
}

// Capacity of version 40 at level medium in each of the encoder's modes: 18,672 bits, less 4 for the mode and
// 14, 13 or 16 for the count. Three digits take 10 bits, two alphanumeric characters 11, a byte 8.
constexpr std::size_t kMostDigits = 5596;
constexpr std::size_t kMostAlphanumerics = 3391;
constexpr std::size_t kMostBytes = 2331;

} // namespace

ZRQRCodeGenerator::ZRQRCodeGenerator() = default;
ZRQRCodeGenerator::~ZRQRCodeGenerator() = default;

ZRQRCodeGenerator* ZRQRCodeGenerator::sharedQRCodeGenerator()
{
    static ZRQRCodeGenerator* const generator = make<ZRQRCodeGenerator>().leak();
    return generator;
}

bool ZRQRCodeGenerator::textFits(const NSString& text)
{
    if (text.isNull())
        return false;
    const std::string utf8 = text.UTF8String();
    const char* const bytes = utf8.c_str();
    const std::size_t length = std::strlen(bytes);
    // The encoder uses the densest mode that can represent all characters of the text.
    if (length <= kMostBytes)
        return true;
    if (qrcodegen_isNumeric(bytes))
        return length <= kMostDigits;
    return length <= kMostAlphanumerics && qrcodegen_isAlphanumeric(bytes);
}

std::uint8_t* ZRQRCodeGenerator::copyQRBitsFromText(const NSString& text, NSInteger* retDim) const
{
    if (text.isNull()) {
        if (retDim)
            *retDim = 0;
        return nullptr;
    }
    const Bytes scratch = makeSymbolBuffer();
    Bytes symbol = makeSymbolBuffer();
    const bool encoded = qrcodegen_encodeText(text.UTF8String().c_str(), scratch.get(), symbol.get(),
        qrcodegen_Ecc_MEDIUM, qrcodegen_VERSION_MIN, qrcodegen_VERSION_MAX, qrcodegen_Mask_AUTO, true);
    // The size is read before the result is checked: after a failure it is out of range, and the encoder's
    // own assertion stops the process here. Exceeding the capacity is the caller's mistake.
    const NSInteger dim = qrcodegen_getSize(symbol.get());
    if (retDim)
        *retDim = dim;
    return encoded ? symbol.release() : nullptr;
}

std::uint8_t* ZRQRCodeGenerator::copyQRBytesFromText(
    const NSString& text, NSInteger* retDim, bool onIsBlack) const
{
    NSInteger dim = 0;
    Bytes bytes;
    if (const Bytes symbol{copyQRBitsFromText(text, &dim)}) {
        bytes.reset(static_cast<std::uint8_t*>(std::malloc(static_cast<std::size_t>(dim * dim))));
        std::uint8_t* byte = bytes.get();
        for (int y = 0; y < dim; ++y) {
            for (int x = 0; x < dim; ++x)
                *byte++ = qrcodegen_getModule(symbol.get(), x, y) != onIsBlack ? 0xFF : 0x00;
        }
    }
    if (retDim)
        *retDim = dim;
    return bytes.release();
}

CGMutablePathRef ZRQRCodeGenerator::copyQRPathFromText(const NSString& text, NSInteger* retDim) const
{
    NSInteger dim = 0;
    RetainPtr<CGPath> path;
    if (const Bytes symbol{copyQRBitsFromText(text, &dim)}) {
        path = adopt(CGPathCreateMutable());
        dim = qrcodegen_getSize(symbol.get());
        for (int y = 0; y < dim; ++y) {
            for (int x = 0; x < dim; ++x) {
                if (qrcodegen_getModule(symbol.get(), x, y))
                    CGPathAddRect(path, nullptr, CGRectMake(x, y, 1, 1));
            }
        }
    }
    if (retDim)
        *retDim = dim;
    return path.leak();
}
