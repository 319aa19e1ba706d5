#pragma once

#include <Foundation/NSObject.h>

#include <concepts>

/// A comparison of two collections, on the stack of `isEqual`. It caches which nested pairs are equal, until
/// the outermost comparison of the thread ends.
///
/// Without that, an object that many collections share is compared once for each path that leads to it: an
/// archive of a few lines can hold an array with 2^64 paths to one leaf. With it the time is proportional to
/// the number of collections.
class CollectionComparison {
public:
    CollectionComparison();
    CollectionComparison(const CollectionComparison&) = delete;
    CollectionComparison& operator=(const CollectionComparison&) = delete;
    ~CollectionComparison();

    /// Whether the collections are the same object, known to be equal, or equal by `areMembersEqual`.
    template <std::predicate Compare>
    bool areEqual(const NSObject* one, const NSObject* other, const Compare& areMembersEqual)
    {
        if (one == other || isKnown(one, other))
            return true;
        if (!areMembersEqual())
            return false;
        remember(one, other);
        return true;
    }

private:
    static bool isKnown(const NSObject* one, const NSObject* other);
    void remember(const NSObject* one, const NSObject* other) const;

    const bool _isOutermost;
};
