#pragma once

#include "CoreGraphics/pdf/DisplayList.h"

#include <cstddef>
#include <memory>

class PDFFile;

/// Records a page, by its index from 0. Takes the file's mutex. Never null: a page that cannot be read is an
/// empty list, and where a limit is exceeded the list ends.
std::shared_ptr<const DisplayList> recordPage(PDFFile& file, std::size_t index);
