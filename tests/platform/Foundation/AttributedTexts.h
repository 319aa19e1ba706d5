#pragma once

#include <Foundation/Foundation.h>

#include <initializer_list>
#include <ostream>
#include <string>
#include <utility>

inline bool operator==(NSRange a, NSRange b)
{
    return a.location == b.location && a.length == b.length;
}
inline void PrintTo(NSRange range, std::ostream* stream)
{
    *stream << "{" << range.location << ", " << range.length << "}";
}

/// The attribute `name` with a number.
inline RetainPtr<NSDictionary> attribute(const char* name, NSInteger value)
{
    return make<NSDictionary>(NSDictionary::Map{{name, NSNumber::numberWithInteger(value)}});
}

/// A string of these pieces, each with a number as its attribute "n"; 0 stands for no attributes.
inline RetainPtr<NSMutableAttributedString> attributedText(
    std::initializer_list<std::pair<const char*, NSInteger>> pieces)
{
    auto text = make<NSMutableAttributedString>();
    for (const auto& [piece, value] : pieces)
        text->appendAttributedString(
            make<NSAttributedString>(piece, value == 0 ? nullptr : attribute("n", value).get()).get());
    return text;
}

inline std::string describe(const NSAttributedString& text)
{
    return text.description().UTF8String();
}
