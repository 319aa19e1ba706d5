#include <Foundation/NSBoxedString.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSException.h>

#include "Foundation/CollectionComparison.h"

#include <algorithm>
#include <utility>

NSDictionary::NSDictionary() = default;

NSDictionary::NSDictionary(Map entries)
    : _entries(std::move(entries))
{
    std::erase_if(_entries, [](const auto& entry) { return entry.first.isNull() || !entry.second; });
}

NSDictionary::~NSDictionary() = default;

NSObject* NSDictionary::objectForKey(const NSString& key) const
{
    const auto entry = _entries.find(key);
    return entry == _entries.end() ? nullptr : entry->second.get();
}

NSString NSDictionary::stringForKey(const NSString& key) const
{
    const auto* boxed = dynamic_cast<const NSBoxedString*>(objectForKey(key));
    return boxed ? boxed->string() : NSString();
}

std::vector<NSString> NSDictionary::allKeys() const
{
    std::vector<NSString> keys;
    keys.reserve(_entries.size());
    for (const auto& entry : _entries)
        keys.push_back(entry.first);
    return keys;
}

bool NSDictionary::isEqual(const NSObject* other) const
{
    const auto* dictionary = dynamic_cast<const NSDictionary*>(other);
    return dictionary && CollectionComparison().areEqual(this, dictionary, [this, dictionary] {
        return std::equal(
            begin(), end(), dictionary->begin(), dictionary->end(), [](const auto& mine, const auto& theirs) {
                return mine.first == theirs.first && mine.second->isEqual(theirs.second);
            });
    });
}

NSUInteger NSDictionary::hash() const
{
    return _entries.size();
}

NSString NSDictionary::description() const
{
    std::string text = "{";
    for (const auto& [key, object] : _entries)
        text += " " + key.UTF8String() + " = " + object->description().UTF8String() + ";";
    return NSString(text + " }");
}

NSMutableDictionary::~NSMutableDictionary() = default;

void NSMutableDictionary::setObject(RetainPtr<NSObject> object, const NSString& key)
{
    if (key.isNull() || !object)
        NSException::raise(
            NSInvalidArgumentException, "A dictionary takes neither null keys nor null objects.");
    _entries.insert_or_assign(key, std::move(object));
}

void NSMutableDictionary::removeObjectForKey(const NSString& key)
{
    _entries.erase(key);
}

void NSMutableDictionary::removeAllObjects()
{
    // Moved out first: the destructor of an object may use the dictionary.
    const Map removed = std::exchange(_entries, {});
}
