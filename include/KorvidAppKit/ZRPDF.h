#pragma once

#include <CoreGraphics/CGColorSpace.h>
#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGPDFDocument.h>
#include <CoreGraphics/CGPDFPage.h>
#include <Foundation/NSObject.h>

#include <cstdint>

class NSData;
class NSImage;
class NSMutableDictionary;
class NSURL;

/// How a page of a `ZRPDF` is scaled into a rectangle. Its aspect ratio never changes. The page's size is
/// that of its crop box, extended to whole points. The page is centred; nothing is clipped.
enum ZRPDFFillMode : std::int32_t {
    ZRPDFFillModeFit = 0,     ///< as large as fits into the rectangle
    ZRPDFFillModeFill = 1,    ///< as small as covers the rectangle
    ZRPDFFillModeNatural = 2, ///< one unit per point; any other value means the same
};

/// A PDF document, such as an icon, that is drawn at any size, in its own colours or tinted with one colour.
///
/// Documents that the application ships are looked up by name, and cached:
///
///     if (const auto star = ZRPDF::pdfNamed("star")) // Resources/star.pdf or Resources/PDF/star.pdf
///         star->drawPageNumber(1, rect, color, context, window->backingScaleFactor(), ZRPDFFillModeFit);
///
/// `ZRPDFView`, `ZRPDFLayer` and `ZRPDFButtonCell` show documents without a line of drawing code.
///
/// Immutable: once created, an object is safe on any thread. The cache, and so every static function that
/// uses it, belongs to the main thread. Page numbers start at 1.
class KORVID_EXPORT ZRPDF : public NSObject {
public:
    /// Reads the file at `url`, which is retained. Null for a null URL, and for a file that cannot be read or
    /// is not a PDF document; nothing is logged.
    static RetainPtr<ZRPDF> initWithURL(RetainPtr<NSURL> url);

    /// The page of that number, which the document owns: valid as long as this object. Null for a number
    /// below 1 or above `numberOfPages`.
    CGPDFPageRef _pageWithNumber(NSInteger number) const;

    // Drawing. A null context means the calling thread's current one. A null colour draws the page in its own
    // colours; any other one is used for all of the page, and what is transparent in the page remains so. A
    // tint draws the page into a mask first, each time: nothing is cached. A mask that is empty, has more
    // than 32767 pixels on a side or does not fit into memory draws nothing.
    //
    // The origin of the page's crop box is not subtracted: a page whose crop box starts at (10, 0) is drawn
    // 10 points, scaled like the page, to the right.
    //
    // The context's graphics state is restored, but for the two colour spaces that the methods with a scale
    // factor set.

    /// Draws a page, y upward, into `rect` of the context. Page 0 is page 1.
    ///
    /// `colorSpace` becomes the space of the context's fill and stroke colours while the page is drawn; null
    /// means sRGB. A tint is drawn at the context's resolution, taken from its horizontal scale (a context
    /// that is mirrored or turned by a right angle has none, and draws nothing). It is always fitted,
    /// whatever `fillMode` is.
    ///
    /// Without any context logs "Tried to draw ZRPDF page with no context". For a number above
    /// `numberOfPages` logs "PDF error for " and this object's description. Negative numbers draw nothing.
    void drawPageNumber(NSInteger number, CGRect rect, CGColorRef color, CGColorSpaceRef colorSpace,
        CGContextRef context, int fillMode) const;

    /// Draws a page into `rect` of the context; `flipped` turns it upside down within the rectangle, so that
    /// it is upright where y points downward. Page 0 draws nothing, and so does any other number that has no
    /// page.
    ///
    /// `scaleFactor` is the number of pixels per point of a tint, as a window's `backingScaleFactor` or a
    /// layer's `contentsScale`; it has no effect without a tint. A tint with a factor of at most 1 has one
    /// pixel per point, in which the page is still scaled by the factor; with 0 nothing is drawn. A tint with
    /// a factor above 1 fills `rect` with its origin and size multiplied by the factor, within the mask over
    /// `rect`: if the origin is not (0, 0), only the part where the two overlap is painted. Translate the
    /// context to draw all of it elsewhere.
    ///
    /// Leaves device RGB as the space of the context's fill and stroke colours, with opaque black as both
    /// colours. Without any context logs "ERR: null cxt in " and this object's description; for a document
    /// without pages "PDF error for " and the description.
    void drawPageNumber(NSInteger number, CGRect rect, CGColorRef color, CGContextRef context,
        CGFloat scaleFactor, int fillMode, bool flipped) const;
    /// The same with `flipped` true.
    void drawPageNumber(NSInteger number, CGRect rect, CGColorRef color, CGContextRef context,
        CGFloat scaleFactor, int fillMode) const;

    // Images.

    /// An image with the page at its own size, one pixel per point, centred on a transparent canvas. The
    /// caller owns it.
    ///
    /// The canvas has the page's aspect ratio and covers `size`: one of its sides is as long as requested,
    /// the other at least as long, both rounded to whole pixels. The page is not scaled to it.
    ///
    /// Stores the canvas's size in `actual`, which may be null, when an image is made, and leaves it as it is
    /// otherwise. Null where there is no such page and for an image that is not finite, empty, or too large
    /// for a bitmap context. Null, and "Bailing on CG image creation to avert divide-by-zero" is logged, when
    /// a side of `size` is 0; "Bailing on CG image creation to avert cropbox divide-by-zero" when one of the
    /// crop box is.
    [[nodiscard]] CGImageRef createCGImageForPage(NSInteger number, CGSize size, CGSize* actual) const;
    /// The same image as an NSImage as many points large as the image has pixels. Null where there is no
    /// image.
    RetainPtr<NSImage> rasterizedNSImageForPage(NSInteger number, CGSize size) const;

    // Geometry and data.

    /// The page's crop box in points; not extended to whole points. For a missing page what
    /// `CGPDFPageGetBoxRect` returns without a page. A subclass that overrides it changes the aspect ratio of
    /// images.
    virtual CGRect cropBoxForPage(NSInteger number) const;
    /// The page of that number, valid as long as this object. Null when there is none.
    CGPDFPageRef page(NSInteger number) const;
    /// 0 for a document that could not be read.
    NSUInteger numberOfPages() const;
    /// The content of the file, read again each time. Null when the file is gone or cannot be read.
    RetainPtr<NSData> pdfData() const;

    // The cache of named documents. It never evicts by itself. Main thread only.

    /// The documents by name: the resource's name, or subdirectory, "/" and name. Created by the first call,
    /// lives as long as the process. Borrowed.
    static NSMutableDictionary* _sharedCache();
    /// Removes all documents from the cache. Those that are retained elsewhere stay usable.
    static void emptyCache();
    /// Removes one name of this very object, and returns whether there was one. A document that is cached
    /// under several names remains cached under the others. Null is never cached.
    static bool removeFromCache(const ZRPDF* pdf);

    /// The document of that name, from the cache or else from the file `name`.pdf in a subdirectory of the
    /// main bundle's resource folder (null: in the folder itself; see NSBundle). Null when there is no such
    /// file or it is not a PDF document; nothing is logged or cached then.
    ///
    /// `cache` selects whether a document that is read is cached. One that is cached already is returned in
    /// any case.
    static RetainPtr<ZRPDF> pdfNamed(NSString name, NSString subdirectory, bool cache);
    /// The same: first without a subdirectory, then in the subdirectory "PDF".
    static RetainPtr<ZRPDF> pdfNamed(NSString name, bool cache);
    /// A string is not meant for `cache`.
    static RetainPtr<ZRPDF> pdfNamed(NSString name, const char* cache) = delete;
    /// The same, cached.
    static RetainPtr<ZRPDF> pdfNamed(NSString name);

protected:
    /// For subclasses. The document is null when the file cannot be read; such an object has no pages.
    explicit ZRPDF(RetainPtr<NSURL> url);
    ~ZRPDF() override;

    RetainPtr<CGPDFDocument> _pdfDoc; ///< null if the file could not be read
    RetainPtr<NSURL> _url;            ///< the file, for `pdfData`

private:
    void drawTinted(NSInteger number, CGRect rect, CGColorRef color, CGContextRef context) const;
};
