#pragma once

#include "CoreText/FontSystem.h"

/// Makes the process find the fonts of one folder alone, until it goes out of scope. One at a time; fonts
/// made under it may be used later on.
class KORVID_EXPORT PrivateFonts {
public:
    /// The folder and all below it. It may be empty: then there is no font at all.
    explicit PrivateFonts(const NSString& folder);
    PrivateFonts(const PrivateFonts&) = delete;
    PrivateFonts& operator=(const PrivateFonts&) = delete;
    ~PrivateFonts();

private:
    std::unique_ptr<FontSystem> _system;
};

/// How often the process's fonts were asked for costly work so far.
KORVID_EXPORT FontWork fontWork();
