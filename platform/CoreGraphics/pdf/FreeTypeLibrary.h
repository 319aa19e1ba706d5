#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_MODULE_H

#include <cstddef>

/// A FreeType library of its own with limited memory. One thread at a time.
class FreeTypeLibrary {
public:
    FreeTypeLibrary();
    FreeTypeLibrary(const FreeTypeLibrary&) = delete;
    FreeTypeLibrary& operator=(const FreeTypeLibrary&) = delete;
    ~FreeTypeLibrary();

    /// Null when there is not enough memory.
    FT_Library handle() const { return _handle; }

private:
    FT_MemoryRec_ _memory;
    std::size_t _byteCount = 0; ///< in use
    FT_Library _handle = nullptr;
};
