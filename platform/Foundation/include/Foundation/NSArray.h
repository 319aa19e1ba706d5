#pragma once

#include <Foundation/NSObject.h>

#include <initializer_list>
#include <vector>

/// A sequence of objects, none of them null.
///
/// Immutable, unless it is an NSMutableArray; then safe on any thread if its objects are.
class KORVID_EXPORT NSArray : public NSObject {
public:
    NSArray();
    /// Retains the objects; nulls are left out.
    explicit NSArray(std::vector<RetainPtr<NSObject>> objects);
    /// Retains the objects; nulls are left out.
    NSArray(std::initializer_list<RetainPtr<NSObject>> objects);

    /// Number of objects.
    NSUInteger count() const { return _objects.size(); }
    /// Borrowed. Raises NSRangeException when there is no such index.
    NSObject* objectAtIndex(NSUInteger index) const;
    /// Borrowed; null when the array is empty.
    NSObject* firstObject() const;
    /// Borrowed; null when the array is empty.
    NSObject* lastObject() const;
    /// Whether a member is equal to `object`, by `isEqual`.
    bool containsObject(const NSObject* object) const;

    /// For `for (const auto& object : *array)`.
    auto begin() const { return _objects.begin(); }
    /// The end of that iteration.
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

    std::vector<RetainPtr<NSObject>> _objects; ///< the members, none of them null
};

/// An array that can change. One thread at a time; it must not change while it is iterated over.
///
/// An index that does not exist raises NSRangeException, a null object NSInvalidArgumentException.
class KORVID_EXPORT NSMutableArray : public NSArray {
public:
    /// The constructors of NSArray.
    using NSArray::NSArray;

    /// Retains the object, as all of these do, and adds it at the end.
    void addObject(RetainPtr<NSObject> object);
    /// The objects of another array, or of this one, at the end. Null does nothing.
    void addObjectsFromArray(const NSArray* array);
    /// Adds an object in front of the one at `index`, or at the end if that is the count.
    void insertObject(RetainPtr<NSObject> object, NSUInteger index);
    /// Replaces the object at `index` by another one.
    void replaceObjectAtIndex(NSUInteger index, RetainPtr<NSObject> object);

    /// Removes the object at `index`; later ones move up.
    void removeObjectAtIndex(NSUInteger index);
    /// Removes every member that is equal to the object, by `isEqual`.
    void removeObject(const NSObject* object);
    /// Removes the last object; raises NSRangeException when the array is empty.
    void removeLastObject();
    /// Removes every object.
    void removeAllObjects();

protected:
    ~NSMutableArray() override;
};
