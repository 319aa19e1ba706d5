#pragma once

#include <CoreGraphics/CGBase.h>

#ifdef __cplusplus
class NSData;
#endif

/// The bytes of an image: a block of memory and the callback that releases it.
///
/// The bytes must not change during the provider's lifetime. Reference counted; safe on any thread. The
/// caller owns the result of a Create function.
struct CGDataProvider;
/// A pointer to a data provider.
typedef struct CGDataProvider* CGDataProviderRef;

/// Releases the memory of a provider: `info`, `data` and `size` are the values passed at its creation. Called
/// once, on the thread that releases the last reference.
typedef void (*CGDataProviderReleaseDataCallback)(void* info, const void* data, size_t size);

KORVID_EXTERN_C_BEGIN

/// A provider of the `size` bytes at `data`, which are borrowed, not copied; `releaseData`, which may be
/// null, is called when the provider is destroyed. Returns null, and does not call `releaseData`, when `data`
/// is null and `size` is not 0.
KORVID_NODISCARD KORVID_EXPORT CGDataProviderRef CGDataProviderCreateWithData(
    void* info, const void* data, size_t size, CGDataProviderReleaseDataCallback releaseData);
#ifdef __cplusplus
/// A provider of the bytes of `data`, which is retained, not copied. Null returns null. For C++.
KORVID_NODISCARD KORVID_EXPORT CGDataProviderRef CGDataProviderCreateWithCFData(NSData* data);
#endif
/// Adds a reference and returns `provider`. Null is allowed.
KORVID_EXPORT CGDataProviderRef CGDataProviderRetain(CGDataProviderRef provider);
/// Removes a reference; removing the last one releases the bytes. Null is allowed.
KORVID_EXPORT void CGDataProviderRelease(CGDataProviderRef provider);

KORVID_EXTERN_C_END

#ifdef __cplusplus
/// All bytes: the NSData that the provider was created with, otherwise a copy. Null for null.
KORVID_NODISCARD KORVID_EXPORT RetainPtr<NSData> CGDataProviderCopyData(CGDataProviderRef provider);

template <> struct RetainTraits<CGDataProvider> {
    static void retain(CGDataProvider* provider) noexcept { CGDataProviderRetain(provider); }
    static void release(CGDataProvider* provider) noexcept { CGDataProviderRelease(provider); }
};
#endif
