#pragma once

#include "CoreText/ShapedText.h"

/// How often the costly work was done. Drawing the same again must not add to it.
struct FontWork {
    std::uint64_t fontQueries = 0;
    std::uint64_t layouts = 0;
};

/// Finds fonts and lays out text with them. Any thread: what was found and laid out is kept, the rest is done
/// by one thread at a time.
class FontSystem {
public:
    /// The one that the process uses.
    static FontSystem& shared();
    /// Makes everybody use another one, which must live until it is replaced, or null for the first one
    /// again. Fonts and lines made before stay what they are.
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
    /// The same, or the nearest face that there is; never null. CTFont.h tells what is near.
    std::shared_ptr<const Typeface> nearestTypeface(const NSString& name);

    /// Lays out a line. Its spans follow each other, and the last one ends with the text. A typeface that has
    /// no glyph for a character is helped out by others.
    std::shared_ptr<const ShapedText> shape(const NSString& text, std::span<const TextSpan> spans);

    FontWork work() const;

private:
    class Library;

    std::unique_ptr<Library> _library;
};
