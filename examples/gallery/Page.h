#pragma once

#include "Options.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSView.h>
#include <CoreGraphics/CGContext.h>

#include <functional>
#include <vector>

/// One page of the gallery, which shows a view or a service.
///
/// A page registers itself by one static object in its own file:
///
///     const GalleryPage badgesPage{"badges", 80, "Badges", "Counts on icons, at any scale.", makeBadgePage};
struct GalleryPage {
    /// `name` is the name of the page's pictures. Pages are shown in ascending `order`. `title` stands in the
    /// list of pages and above the page, `words` below the title: a sentence or two on what the page shows
    /// and on what the mouse and keys do.
    GalleryPage(const char* name, int order, const char* title, const char* words,
        RetainPtr<NSView> (*makeView)(const GalleryOptions& options));

    const char* name;
    int order;
    const char* title;
    const char* words;
    RetainPtr<NSView> (*makeView)(const GalleryOptions& options);

    /// All pages in their order.
    static std::vector<const GalleryPage*> all();
};

/// Side of a card, in points.
inline constexpr CGFloat kGalleryCardSide = 376;

/// An empty page, `inside` large within its margins; by default as large as one card. Its size is fixed.
RetainPtr<NSView> makeGalleryPage(NSSize inside = {kGalleryCardSide, kGalleryCardSide});

/// Computes the frames of a page's cards from the rectangle within the page's margins. A card whose frame is
/// empty is hidden.
using GalleryLayout = std::function<std::vector<NSRect>(NSRect inside)>;

/// A page of cards that are laid out whenever the page is resized. In its pictures it is `inside` large
/// within its margins; in the window it fills what there is, but is never smaller than `minimumInside`.
RetainPtr<NSView> makeGalleryPage(std::vector<RetainPtr<NSView>> cards, GalleryLayout layout,
    NSSize inside = {kGalleryCardSide, kGalleryCardSide},
    NSSize minimumInside = {kGalleryCardSide, kGalleryCardSide});

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

/// The part of a card that is left above a caption of one line.
NSRect aboveCaption(NSRect card);

/// Draws a caption at the bottom of a card, shortened if need be.
void drawCaption(CGContextRef context, NSRect card, const NSString& text);

/// Radius of a card's corners, in points.
inline constexpr CGFloat kGalleryCardRadius = 8;

/// Margin around a page and gap between pages, in points.
inline constexpr CGFloat kGalleryMargin = 24;

/// Gap between the cards of a page, in points.
inline constexpr CGFloat kGalleryGap = 16;

/// Equal cards in columns, row by row from the top left, on whole points.
GalleryLayout galleryGrid(std::size_t columns, std::size_t count, CGFloat gap = kGalleryGap);
