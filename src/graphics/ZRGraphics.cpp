#include <KorvidAppKit/ZRGraphics.h>

#include <AppKit/NSApplication.h>
#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSGraphicsContext.h>
#include <Foundation/NSDictionary.h>
#include <KorvidAppKit/ZRAppKitAdditions.h>

namespace {

constexpr char kEffectiveAppearance[] = "effectiveAppearance";

} // namespace

ZRGraphics::ZRGraphics()
    : _colorNamesToHexLEGACY(makeBuiltInTable())
    , _colorNamesToHex(readApplicationTable())
    , _csDeviceRGB(adopt(CGColorSpaceCreateDeviceRGB()))
    , _csDeviceGray(adopt(CGColorSpaceCreateDeviceGray()))
    , _csSRGB(adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB)))
    , _csPattern(adopt(CGColorSpaceCreatePattern(_csSRGB)))
    , _colorCache(make<NSMutableDictionary>())
    , _colorCacheCG(make<NSMutableDictionary>())
{
    // Without an application object neither does anything: the cached appearance stays as it is. Observers
    // are held weakly, so none has to be removed.
    if (NSApp)
        NSApp->addObserver(this, kEffectiveAppearance, 0, nullptr);
    ZRAppKitAdditions::updateCachedEffectiveAppearance(NSApp);
}

ZRGraphics::~ZRGraphics() = default;

ZRGraphics* ZRGraphics::sharedGraphics()
{
    // No lock: the first call comes from the main thread. Never destroyed: views may draw until the process
    // ends.
    static ZRGraphics* gSharedGraphics = nullptr;
    if (!gSharedGraphics)
        gSharedGraphics = make<ZRGraphics>().leak();
    return gSharedGraphics;
}

CGContextRef ZRGraphics::sharedContext()
{
    const NSGraphicsContext* context = NSGraphicsContext::currentContext();
    return context ? context->CGContext() : nullptr;
}

double ZRGraphics::smoothstep(double t)
{
    return (3 - (t + t)) * (t * t);
}

RetainPtr<NSFont> ZRGraphics::themeFontOfSize(CGFloat size) const
{
    return NSFont::fontWithName("HelveticaNeue-Light", size);
}

dispatch_queue_t ZRGraphics::sharedRenderQueue()
{
    static dispatch_once_t once;
    static dispatch_queue_t queue;
    dispatch_once(&once, [] { queue = dispatch_queue_create("ZRGraphics_q", DISPATCH_QUEUE_CONCURRENT); });
    return queue;
}

void ZRGraphics::observeValueForKeyPath(
    NSString keyPath, NSObject* object, NSDictionary* change, void* context)
{
    if (keyPath == kEffectiveAppearance)
        ZRAppKitAdditions::updateCachedEffectiveAppearance(NSApp);
    else
        NSObject::observeValueForKeyPath(keyPath, object, change, context);
}
