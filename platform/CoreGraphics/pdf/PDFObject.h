#pragma once

#include "CoreGraphics/pdf/Qpdf.h"

#include <CoreGraphics/CGAffineTransform.h>

#include <compare>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Names an indirect object of a file. {0, 0} stands for a direct object.
struct PDFObjectID {
    int number = 0;
    int generation = 0;

    bool isIndirect() const { return number != 0; }
    auto operator<=>(const PDFObjectID&) const = default;
};

/// An object of a file: a number, a name, a dictionary, a stream and so on.
///
/// All accessors are total: an object of another type gives the fallback. A stream reads as its dictionary,
/// but `isDictionary` is false for it. Keys and names are without their slash. References are followed.
/// Objects belong to a file and are used under its mutex only.
class PDFObject {
public:
    /// The null object.
    PDFObject() = default;
    explicit PDFObject(const QPDFObjectHandle& handle)
        : _handle(handle)
    {
    }
    static PDFObject makeBoolean(bool value);
    static PDFObject makeNumber(double value);
    static PDFObject makeName(const std::string& name);
    static PDFObject makeString(const std::string& bytes);
    static PDFObject makeArray(const std::vector<PDFObject>& items);
    static PDFObject makeDictionary(const std::map<std::string, PDFObject>& entries);

    bool isNull() const;
    bool isBoolean() const;
    bool isNumber() const;
    bool isName() const;
    bool isString() const;
    bool isArray() const;
    bool isDictionary() const;
    bool isStream() const;

    bool boolean(bool fallback = false) const;
    /// Clamped to ±1e9; never NaN.
    double number(double fallback = 0) const;
    /// Truncated towards 0, and clamped to ±1e9.
    int integer(int fallback = 0) const;
    std::string name() const;
    bool isName(std::string_view name) const;
    std::string string() const;

    PDFObject operator[](const std::string& key) const;
    std::vector<std::string> keys() const;

    /// Number of elements, at most `PDFLimits::arrayItems`; 0 unless an array.
    std::size_t size() const;
    PDFObject at(std::size_t index) const;
    /// The first elements of an array; those that are not numbers read as 0.
    std::vector<double> numbers(std::size_t most = 64) const;
    /// The rectangle of two opposite corners, in any order. Nothing unless there are four numbers.
    std::optional<CGRect> rect() const;
    /// Nothing unless there are six numbers.
    std::optional<CGAffineTransform> matrix() const;

    PDFObjectID id() const;
    /// True for the same object of the file, direct ones included; not for two equal ones.
    bool isSameAs(const PDFObject& other) const { return _handle.isSameObjectAs(other._handle); }
    const QPDFObjectHandle& handle() const { return _handle; }

private:
    /// qpdf resolves references on reading, for which it wants a mutable handle.
    mutable QPDFObjectHandle _handle;
};
