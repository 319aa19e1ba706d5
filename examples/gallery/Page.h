#pragma once

#include "Options.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSView.h>
#include <CoreGraphics/CGContext.h>

#include <vector>

/// One page of the gallery, which shows a view or a service.
///
/// A page registers itself by one static object in its own file:
///
///     const GalleryPage page {"badge", 20, makeBadgePage};
struct GalleryPage {
    /// `name` is the name of the page's pictures. Pages are shown in ascending `order`.
    GalleryPage(const char* name, int order, RetainPtr<NSView> (*makeView)(const GalleryOptions& options));

    const char* name;
    int order;
    RetainPtr<NSView> (*makeView)(const GalleryOptions& options);

    /// All pages in their order.
    static std::vector<const GalleryPage*> all();
};

/// Side of a card, in points.
inline constexpr CGFloat kGalleryCardSide = 376;

/// An empty page, `inside` large within its margins; by default as large as one card.
RetainPtr<NSView> makeGalleryPage(NSSize inside = {kGalleryCardSide, kGalleryCardSide});

/// The colour of that name in the application's colour catalogue (Resources/Colors.xcassets), whose light and
/// dark variants follow the appearance, else in the palette. For what is coloured once and drawn many times.
RetainPtr<NSColor> galleryColor(const char* name);

/// The same colour in the appearance in force: for what is coloured whenever it is drawn. Borrowed, lives as
/// long as the process.
CGColorRef galleryCGColor(const char* name);

/// The palette's own colour of that name, whatever the appearance. Borrowed, lives as long as the process.
CGColorRef paletteColor(const char* name);

/// Fills a card with round corners in the colour `galleryCGColor(color)`.
void fillGalleryCard(CGContextRef context, NSRect card, const char* color = "zel-button-bg");

/// Clips to a card with round corners.
void clipToGalleryCard(CGContextRef context, NSRect card);

/// Radius of a card's corners, in points.
inline constexpr CGFloat kGalleryCardRadius = 8;

/// Margin around a page and gap between pages, in points.
inline constexpr CGFloat kGalleryMargin = 24;
