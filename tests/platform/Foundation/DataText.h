#pragma once

#include <Foundation/NSData.h>

#include <string>
#include <string_view>

/// The bytes of a text as data, and back.
inline RetainPtr<NSData> dataOf(std::string_view text)
{
    return NSData::dataWithBytes(text.data(), text.size());
}

inline std::string textOf(const RetainPtr<NSData>& data)
{
    return {static_cast<const char*>(data->bytes()), data->length()};
}
