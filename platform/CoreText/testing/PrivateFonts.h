#pragma once

#include "CoreText/FontSystem.h"

/// While it exists, the process finds the fonts of one folder alone. One at a time; fonts created meanwhile
/// may be used later.
class KORVID_EXPORT PrivateFonts {
public:
    /// The folder and its subfolders, which may be empty: then there is no font at all.
    explicit PrivateFonts(const NSString& folder);
    PrivateFonts(const PrivateFonts&) = delete;
    PrivateFonts& operator=(const PrivateFonts&) = delete;
    ~PrivateFonts();

private:
    std::unique_ptr<FontSystem> _system;
};

/// Counts of the costly work of the process's fonts so far.
KORVID_EXPORT FontWork fontWork();
/// The bytes of all cached masks of glyphs.
KORVID_EXPORT std::size_t glyphMaskByteCount();
