#pragma once

#include <Foundation/NSString.h>

#include <string>

/// What the name of a face says: "HelveticaNeue-BoldItalic" is the family "Helvetica Neue", bold and italic.
struct FaceName {
    std::string family; ///< UTF-8; empty when there is nothing but a style
    int weight = 400;   ///< as in style sheets: 400 is regular, 700 bold
    bool isItalic = false;
    bool isCondensed = false;
};

/// Takes a PostScript name, a full name or a family's name apart. Null and the empty text are a regular face
/// of no family.
FaceName parseFaceName(const NSString& name);
