#pragma once

#include <AppKit/NSColor.h>

/// What a colour of the catalogue is made of.
struct NSColor::Variants {
    NSString name;
    RetainPtr<NSColor> light; ///< of components, like `dark`
    RetainPtr<NSColor> dark;
};

/// A colour with variants. Both are colours of components.
RetainPtr<NSColor> makeCatalogColor(const NSString& name, RetainPtr<NSColor> light, RetainPtr<NSColor> dark);
