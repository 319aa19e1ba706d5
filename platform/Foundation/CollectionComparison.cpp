#include "Foundation/CollectionComparison.h"

#include <map>
#include <utility>

namespace {

using Addresses = std::pair<const NSObject*, const NSObject*>;
/// Both are retained, so that no other object gets either address before the comparison ends.
using Owners = std::pair<RetainPtr<const NSObject>, RetainPtr<const NSObject>>;

thread_local bool isComparing = false;
thread_local std::map<Addresses, Owners> equalPairs;

} // namespace

CollectionComparison::CollectionComparison()
    : _isOutermost(!std::exchange(isComparing, true))
{
}

CollectionComparison::~CollectionComparison()
{
    if (!_isOutermost)
        return;
    isComparing = false;
    // Releasing an object may run code that compares collections.
    const auto released = std::exchange(equalPairs, {});
}

bool CollectionComparison::isKnown(const NSObject* one, const NSObject* other)
{
    return equalPairs.contains({one, other});
}

void CollectionComparison::remember(const NSObject* one, const NSObject* other) const
{
    if (!_isOutermost)
        equalPairs.try_emplace({one, other}, one, other);
}
