#include "CoreGraphics/CGImageInternal.h"

#include <Foundation/NSData.h>

namespace {

void releaseData(void* data, const void*, std::size_t)
{
    static_cast<NSData*>(data)->release();
}

} // namespace

CGDataProviderRef CGDataProviderCreateWithData(
    void* info, const void* data, std::size_t size, CGDataProviderReleaseDataCallback releaseData)
{
    if (!data && size > 0)
        return nullptr;
    return new CGDataProvider(info, data, size, releaseData);
}

CGDataProviderRef CGDataProviderCreateWithCFData(NSData* data)
{
    if (!data)
        return nullptr;
    data->retain();
    return new CGDataProvider(data, data->bytes(), data->length(), releaseData);
}

CGDataProviderRef CGDataProviderRetain(CGDataProviderRef provider)
{
    return CGRetainRecord(provider);
}

void CGDataProviderRelease(CGDataProviderRef provider)
{
    CGReleaseRecord(provider);
}

RetainPtr<NSData> CGDataProviderCopyData(CGDataProviderRef provider)
{
    if (!provider)
        return nullptr;
    if (provider->releaseData == releaseData)
        return static_cast<NSData*>(provider->info);
    return NSData::dataWithBytes(provider->bytes, provider->size);
}
