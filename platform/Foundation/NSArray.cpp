#include <Foundation/NSArray.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <utility>

NSArray::NSArray() = default;

NSArray::NSArray(std::vector<RetainPtr<NSObject>> objects)
    : _objects(std::move(objects))
{
    std::erase(_objects, nullptr);
}

NSArray::NSArray(std::initializer_list<RetainPtr<NSObject>> objects)
    : NSArray(std::vector<RetainPtr<NSObject>>(objects))
{
}

NSArray::~NSArray() = default;

NSObject* NSArray::objectAtIndex(NSUInteger index) const
{
    if (index >= _objects.size())
        NSException::raise(NSRangeException, "The array has no object at that index.");
    return _objects[index].get();
}

NSObject* NSArray::firstObject() const
{
    return _objects.empty() ? nullptr : _objects.front().get();
}

NSObject* NSArray::lastObject() const
{
    return _objects.empty() ? nullptr : _objects.back().get();
}

bool NSArray::containsObject(const NSObject* object) const
{
    return std::any_of(
        _objects.begin(), _objects.end(), [object](const auto& member) { return member->isEqual(object); });
}

bool NSArray::isEqual(const NSObject* other) const
{
    const auto* array = dynamic_cast<const NSArray*>(other);
    return array
        && std::equal(begin(), end(), array->begin(), array->end(),
            [](const auto& mine, const auto& theirs) { return mine->isEqual(theirs.get()); });
}

NSUInteger NSArray::hash() const
{
    return _objects.size();
}

NSString NSArray::description() const
{
    std::string text = "(";
    for (const auto& object : _objects) {
        text += text.size() > 1 ? ", " : "";
        text += object->description().UTF8String();
    }
    return NSString(text + ")");
}
