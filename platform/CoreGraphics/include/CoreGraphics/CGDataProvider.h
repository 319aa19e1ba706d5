#pragma once

#include <CoreGraphics/CGBase.h>

class NSData;

/// Bytes that an image is made of: somebody's memory and how to give it back.
///
/// The bytes must not change while the provider lives. Reference counted; safe on any thread.
struct CGDataProvider;
using CGDataProviderRef = CGDataProvider*;

/// Gives memory back: `info`, `data` and `size` are what the provider was made with. Called once, on the
/// thread that gives up the last reference.
using CGDataProviderReleaseDataCallback = void (*)(void* info, const void* data, std::size_t size);

extern "C" {

/// Lends `size` bytes at `data`; `releaseData`, which may be null, is called when the provider goes. Null
/// when `data` is null and `size` is not 0; then `releaseData` is not called.
[[nodiscard]] KORVID_EXPORT CGDataProviderRef CGDataProviderCreateWithData(
    void* info, const void* data, std::size_t size, CGDataProviderReleaseDataCallback releaseData);
/// The bytes of `data`, which is retained and not copied. Null gives null.
[[nodiscard]] KORVID_EXPORT CGDataProviderRef CGDataProviderCreateWithCFData(NSData* data);
/// Takes one more reference and returns `provider`. Null is allowed.
KORVID_EXPORT CGDataProviderRef CGDataProviderRetain(CGDataProviderRef provider);
/// Gives up one reference; the last one gives the bytes back. Null is allowed.
KORVID_EXPORT void CGDataProviderRelease(CGDataProviderRef provider);

} // extern "C"

/// All bytes: the NSData that the provider was made with, or else a copy. Null for null.
[[nodiscard]] KORVID_EXPORT RetainPtr<NSData> CGDataProviderCopyData(CGDataProviderRef provider);

template <> struct RetainTraits<CGDataProvider> {
    static void retain(CGDataProvider* provider) noexcept { CGDataProviderRetain(provider); }
    static void release(CGDataProvider* provider) noexcept { CGDataProviderRelease(provider); }
};
