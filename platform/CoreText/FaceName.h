#pragma once

#include <Foundation/NSString.h>

#include <string>

/// The parts of a face's name: "HelveticaNeue-BoldItalic" is the family "Helvetica Neue", bold and italic.
struct FaceName {
    std::string family; ///< UTF-8; empty when the name is only a style
    int weight = 400;   ///< as in style sheets: 400 is regular, 700 bold
    bool isItalic = false;
    bool isCondensed = false;
};

/// Parses a PostScript name, a full name or a family's name. A null or empty name is a regular face without a
/// family.
FaceName parseFaceName(const NSString& name);
