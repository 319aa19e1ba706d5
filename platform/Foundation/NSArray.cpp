#include <Foundation/NSArray.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSException.h>

#include "Foundation/CollectionComparison.h"

#include <algorithm>
#include <string>
#include <utility>

namespace {

/// Whether a description shows the string without quotes.
bool isPlainWord(const std::string& text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char character) {
        return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z')
            || (character >= 'a' && character <= 'z');
    });
}

void appendQuoted(const std::string& text, std::string& result)
{
    result += '"';
    for (const char character : text) {
        if (character == '\n') {
            result += "\\n";
            continue;
        }
        if (character == '"' || character == '\\')
            result += '\\';
        result += character;
    }
    result += '"';
}

/// Indents the second and later lines.
void appendIndented(const std::string& text, std::string& result)
{
    for (const char character : text) {
        result += character;
        if (character == '\n')
            result += "    ";
    }
}

} // namespace

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
    return array && CollectionComparison().areEqual(this, array, [this, array] {
        return std::equal(begin(), end(), array->begin(), array->end(),
            [](const auto& mine, const auto& theirs) { return mine->isEqual(theirs.get()); });
    });
}

NSUInteger NSArray::hash() const
{
    return _objects.size();
}

NSString NSArray::description() const
{
    std::string text = "(\n";
    for (std::size_t i = 0; i < _objects.size(); ++i) {
        const NSObject* object = _objects[i].get();
        text += "    ";
        const std::string description = object->description().UTF8String();
        if (dynamic_cast<const NSBoxedString*>(object) && !isPlainWord(description))
            appendQuoted(description, text);
        else
            appendIndented(description, text);
        text += i + 1 < _objects.size() ? ",\n" : "\n";
    }
    return NSString(text + ")");
}

// NSMutableArray.

NSMutableArray::~NSMutableArray() = default;

void NSMutableArray::addObject(RetainPtr<NSObject> object)
{
    insertObject(std::move(object), count());
}

void NSMutableArray::addObjectsFromArray(const NSArray* array)
{
    if (!array)
        return;
    const std::vector<RetainPtr<NSObject>> added(array->begin(), array->end());
    _objects.insert(_objects.end(), added.begin(), added.end());
}

void NSMutableArray::insertObject(RetainPtr<NSObject> object, NSUInteger index)
{
    if (!object)
        NSException::raise(NSInvalidArgumentException, "An array takes no null objects.");
    if (index > count())
        NSException::raise(NSRangeException, "The index is beyond the end of the array.");
    _objects.insert(_objects.begin() + NSInteger(index), std::move(object));
}

void NSMutableArray::replaceObjectAtIndex(NSUInteger index, RetainPtr<NSObject> object)
{
    if (!object)
        NSException::raise(NSInvalidArgumentException, "An array takes no null objects.");
    objectAtIndex(index); // raises when there is none
    const RetainPtr<NSObject> old = std::exchange(_objects[index], std::move(object));
}

void NSMutableArray::removeObjectAtIndex(NSUInteger index)
{
    const RetainPtr<NSObject> old = objectAtIndex(index);
    _objects.erase(_objects.begin() + NSInteger(index));
}

void NSMutableArray::removeObject(const NSObject* object)
{
    const RetainPtr<const NSObject> keep = object; // it may be a member
    std::erase_if(_objects, [object](const auto& member) { return member->isEqual(object); });
}

void NSMutableArray::removeLastObject()
{
    removeObjectAtIndex(count() - 1);
}

void NSMutableArray::removeAllObjects()
{
    const auto old = std::exchange(_objects, {});
}
