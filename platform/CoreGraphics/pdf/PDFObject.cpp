#include "CoreGraphics/pdf/PDFObject.h"

#include "CoreGraphics/pdf/PDFBudget.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kLargestNumber = 1e9;

/// The key as qpdf takes it.
std::string withSlash(std::string_view key)
{
    std::string result;
    result.reserve(key.size() + 1);
    result += '/';
    result += key;
    return result;
}

} // namespace

PDFObject PDFObject::makeBoolean(bool value)
{
    return PDFObject(QPDFObjectHandle::newBool(value));
}

PDFObject PDFObject::makeNumber(double value)
{
    // Whole numbers as such: readers look at the type.
    if (value == std::trunc(value) && std::fabs(value) <= kLargestNumber)
        return PDFObject(QPDFObjectHandle::newInteger(static_cast<long long>(value)));
    return PDFObject(QPDFObjectHandle::newReal(value, 9));
}

PDFObject PDFObject::makeName(const std::string& name)
{
    return PDFObject(QPDFObjectHandle::newName(withSlash(name)));
}

PDFObject PDFObject::makeString(const std::string& bytes)
{
    return PDFObject(QPDFObjectHandle::newString(bytes));
}

PDFObject PDFObject::makeArray(const std::vector<PDFObject>& items)
{
    std::vector<QPDFObjectHandle> handles;
    handles.reserve(items.size());
    for (const auto& item : items)
        handles.push_back(item.isNull() ? QPDFObjectHandle::newNull() : item._handle);
    return PDFObject(QPDFObjectHandle::newArray(handles));
}

PDFObject PDFObject::makeDictionary(const std::map<std::string, PDFObject>& entries)
{
    std::map<std::string, QPDFObjectHandle> handles;
    for (const auto& [key, value] : entries) {
        if (!value.isNull())
            handles.emplace(withSlash(key), value._handle);
    }
    return PDFObject(QPDFObjectHandle::newDictionary(handles));
}

bool PDFObject::isNull() const
{
    return !_handle.isInitialized() || _handle.isNull();
}

bool PDFObject::isBoolean() const
{
    return _handle.isInitialized() && _handle.isBool();
}

bool PDFObject::isNumber() const
{
    return _handle.isInitialized() && _handle.isNumber();
}

bool PDFObject::isName() const
{
    return _handle.isInitialized() && _handle.isName();
}

bool PDFObject::isString() const
{
    return _handle.isInitialized() && _handle.isString();
}

bool PDFObject::isArray() const
{
    return _handle.isInitialized() && _handle.isArray();
}

bool PDFObject::isDictionary() const
{
    return _handle.isInitialized() && _handle.isDictionary();
}

bool PDFObject::isStream() const
{
    return _handle.isInitialized() && _handle.isStream();
}

bool PDFObject::boolean(bool fallback) const
{
    return isBoolean() ? _handle.getBoolValue() : fallback;
}

double PDFObject::number(double fallback) const
{
    if (!isNumber())
        return fallback;
    const double value = _handle.getNumericValue();
    return std::isnan(value) ? fallback : std::clamp(value, -kLargestNumber, kLargestNumber);
}

int PDFObject::integer(int fallback) const
{
    return int(number(fallback));
}

std::string PDFObject::name() const
{
    if (!isName())
        return {};
    std::string name = _handle.getName();
    name.erase(0, 1);
    return name;
}

bool PDFObject::isName(std::string_view name) const
{
    return isName() && std::string_view(_handle.getName()).substr(1) == name;
}

std::string PDFObject::string() const
{
    return isString() ? _handle.getStringValue() : std::string();
}

PDFObject PDFObject::operator[](const std::string& key) const
{
    if (isDictionary())
        return PDFObject(_handle.getKey(withSlash(key)));
    if (isStream())
        return PDFObject(_handle.getDict().getKey(withSlash(key)));
    return {};
}

std::vector<std::string> PDFObject::keys() const
{
    std::vector<std::string> result;
    const auto add = [&](QPDFObjectHandle dictionary) {
        for (const auto& key : dictionary.getKeys())
            result.push_back(key.substr(1));
    };
    if (isDictionary())
        add(_handle);
    else if (isStream())
        add(_handle.getDict());
    return result;
}

std::size_t PDFObject::size() const
{
    return isArray() ? std::min(std::size_t(std::max(_handle.getArrayNItems(), 0)), kPDFLimits.arrayItems)
                     : 0;
}

PDFObject PDFObject::at(std::size_t index) const
{
    return index < size() ? PDFObject(_handle.getArrayItem(int(index))) : PDFObject();
}

std::vector<double> PDFObject::numbers(std::size_t most) const
{
    std::vector<double> result(std::min(size(), most));
    for (std::size_t index = 0; index < result.size(); ++index)
        result[index] = at(index).number();
    return result;
}

std::optional<CGRect> PDFObject::rect() const
{
    if (size() < 4)
        return std::nullopt;
    for (std::size_t index = 0; index < 4; ++index) {
        if (!at(index).isNumber())
            return std::nullopt;
    }
    const auto corners = numbers(4);
    return CGRectMake(std::min(corners[0], corners[2]), std::min(corners[1], corners[3]),
        std::fabs(corners[2] - corners[0]), std::fabs(corners[3] - corners[1]));
}

std::optional<CGAffineTransform> PDFObject::matrix() const
{
    if (size() < 6)
        return std::nullopt;
    for (std::size_t index = 0; index < 6; ++index) {
        if (!at(index).isNumber())
            return std::nullopt;
    }
    const auto values = numbers(6);
    return CGAffineTransformMake(values[0], values[1], values[2], values[3], values[4], values[5]);
}

PDFObjectID PDFObject::id() const
{
    if (!_handle.isInitialized() || !_handle.isIndirect())
        return {};
    return {_handle.getObjectID(), _handle.getGeneration()};
}
