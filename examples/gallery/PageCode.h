#pragma once

#include <string_view>

/// The lines of code that make what a page shows, without a line feed at their end: the snippet below the
/// page's picture in the documentation. Empty for a page without one.
const char* codeOfPage(std::string_view page);
