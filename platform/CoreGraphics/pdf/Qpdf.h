#pragma once

// qpdf's headers, as all files here include them.

// Without the old smart pointer of qpdf, which its newer versions lack.
#define POINTERHOLDER_TRANSITION 4

// Some versions of clang refuse qpdf/JSON.hh in C++20: it has a vector of a type that is not complete yet. We
// use nothing that takes or returns this type, so that its name is enough.
#if defined(__clang__) && __clang_major__ < 16
#define JSON_HH
class JSON;
#endif

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
