#pragma once

#include <Foundation/NSObject.h>

#include <initializer_list>
#include <vector>

/// A sequence of objects, none of them null. Immutable; safe on any thread if its objects are.
class KORVID_EXPORT NSArray : public NSObject {
public:
    NSArray();
    /// Retains the objects; nulls are left out.
    explicit NSArray(std::vector<RetainPtr<NSObject>> objects);
    NSArray(std::initializer_list<RetainPtr<NSObject>> objects);

    NSUInteger count() const { return _objects.size(); }
    /// Borrowed. Raises NSRangeException when there is no such index.
    NSObject* objectAtIndex(NSUInteger index) const;
    /// Borrowed; null when the array is empty.
    NSObject* firstObject() const;
    NSObject* lastObject() const;
    /// Whether a member is equal to `object`, by `isEqual`.
    bool containsObject(const NSObject* object) const;

    /// For `for (const auto& object : *array)`.
    auto begin() const { return _objects.begin(); }
    auto end() const { return _objects.end(); }

    /// True for this array, and for another one of equal objects in the same order. Takes time proportional
    /// to the number of nested collections, also where many of them share the same objects.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// The objects' descriptions between parentheses, each on a line of its own after four spaces. A string
    /// is put into quotes unless it is made of ASCII letters and digits only.
    NSString description() const override;

protected:
    ~NSArray() override;

private:
    std::vector<RetainPtr<NSObject>> _objects;
};
