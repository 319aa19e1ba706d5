#pragma once

#include <AppKit/NSColor.h>

/// What a colour of the catalogue is made of.
struct NSColor::Variants {
    NSString name;
    RetainPtr<NSColor> light; ///< of components, like `dark`
    RetainPtr<NSColor> dark;
};

class NSData;

/// A colour with variants. Both are colours of components.
RetainPtr<NSColor> makeCatalogColor(const NSString& name, RetainPtr<NSColor> light, RetainPtr<NSColor> dark);

/// The colour that the "Contents.json" of a colour set describes; null when that is damaged. Exported for its
/// tests.
KORVID_EXPORT RetainPtr<NSColor> makeColorOfAsset(const NSData& contents, const NSString& name);
