#pragma once

#include "support/Repeated.h"

#include <functional>
#include <ostream>
#include <string>
#include <vector>

/// A file that tries to crash, hang or exhaust whoever opens and draws it.
struct HostilePDF {
    std::string name;
    std::function<std::string()> make; ///< its bytes, made on demand: some have many megabytes
};

/// For messages of tests.
inline void PrintTo(const HostilePDF& file, std::ostream* out)
{
    *out << file.name;
}

/// All of them, in families.
std::vector<HostilePDF> hostilePDFs();

std::vector<HostilePDF> hostileStructures(); ///< page trees, tables, objects, truncated and encrypted files
std::vector<HostilePDF> hostileContents();   ///< operators, operands, paths, strokes, boxes
std::vector<HostilePDF> hostileForms();      ///< what runs contents within contents
std::vector<HostilePDF> hostileImages();     ///< images and filters
std::vector<HostilePDF> hostileResources();  ///< functions, colour spaces, shadings, fonts

/// So many bytes, the same in each run.
std::string randomBytes(std::size_t count);
