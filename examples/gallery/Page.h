#pragma once

#include "Options.h"

#include <AppKit/NSView.h>
#include <CoreGraphics/CGContext.h>

#include <vector>

/// One page of the gallery: a view or service shown on a ground of its own.
///
/// A page adds itself by one static object in its own file; nothing else has to know it:
///
///     const GalleryPage page {"badge", 20, makeBadgePage};
struct GalleryPage {
    /// `name` names the page's pictures. Pages are shown in the order of `order`.
    GalleryPage(const char* name, int order, RetainPtr<NSView> (*makeView)(const GalleryOptions& options));

    const char* name;
    int order;
    RetainPtr<NSView> (*makeView)(const GalleryOptions& options);

    /// All pages in their order.
    static std::vector<const GalleryPage*> all();
};

/// Side of a page without its margins, in points.
inline constexpr CGFloat kGalleryCardSide = 376;

/// An empty page, with so much room within its margins: for one card, if nothing else is said.
RetainPtr<NSView> makeGalleryPage(NSSize inside = {kGalleryCardSide, kGalleryCardSide});

/// The palette's colour of that name; drawn with in a page. Borrowed, lives as long as the process.
CGColorRef galleryColor(const char* name);

/// Fills a card with round corners in the palette's colour of that name.
void fillGalleryCard(CGContextRef context, NSRect card, const char* color);

/// Cuts off what is drawn from now on outside of a card with round corners.
void clipToGalleryCard(CGContextRef context, NSRect card);

/// Radius of a card's corners, in points.
inline constexpr CGFloat kGalleryCardRadius = 8;

/// Space around and between what pages show, in points.
inline constexpr CGFloat kGalleryMargin = 24;
