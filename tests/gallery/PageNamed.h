#pragma once

#include "Page.h"

#include <stdexcept>
#include <string>
#include <string_view>

/// The view of the page of that name. Throws if there is none.
inline RetainPtr<NSView> makePageNamed(std::string_view name, const GalleryOptions& options = {})
{
    for (const GalleryPage* page : GalleryPage::all()) {
        if (page->name == name)
            return page->makeView(options);
    }
    throw std::runtime_error("there is no page of the name " + std::string(name));
}
