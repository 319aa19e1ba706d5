#pragma once

#include "CoreText/ShapedText.h"

/// Counts of costly work, none of which repeated drawing of the same text may add to.
struct FontWork {
    std::uint64_t fontQueries = 0;
    std::uint64_t layouts = 0;
};

/// Finds fonts and lays out text with them, and caches both. Any thread: calls that miss the caches run one
/// at a time.
class FontSystem {
public:
    /// The system that the process uses.
    static FontSystem& shared();
    /// Replaces the shared system. Borrowed: it must live until it is replaced; null restores the installed
    /// fonts. Existing fonts and lines are not affected.
    static void setShared(FontSystem* system);

    /// With the fonts that are installed.
    FontSystem();
    /// With the fonts of one folder alone, which may have none, and the rules of its file "fonts.conf", if
    /// there is one. fontconfig's cache of them is the folder ".cache" there.
    explicit FontSystem(const NSString& folder);
    FontSystem(const FontSystem&) = delete;
    FontSystem& operator=(const FontSystem&) = delete;
    ~FontSystem();

    /// The face of that PostScript name, full name or family, in this order; null when there is none.
    std::shared_ptr<const Typeface> typefaceNamed(const NSString& name);
    /// The same, or the nearest face that is installed; never null. CTFont.h defines "nearest".
    std::shared_ptr<const Typeface> nearestTypeface(const NSString& name);

    /// Lays out a line. The spans are contiguous, and the last one ends with the text. Characters that a
    /// typeface lacks come from fallback fonts.
    std::shared_ptr<const ShapedText> shape(const NSString& text, std::span<const TextSpan> spans);

    FontWork work() const;

private:
    class Library;

    std::unique_ptr<Library> _library;
};
