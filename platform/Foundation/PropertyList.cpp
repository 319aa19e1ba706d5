#include "Foundation/PropertyList.h"

#include <Foundation/NSArray.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSData.h>
#include <Foundation/NSDate.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSNumber.h>

RetainPtr<NSObject> copyPropertyList(const NSObject& object, int level)
{
    if (level >= kDeepestPropertyList)
        return nullptr;
    if (const auto* array = dynamic_cast<const NSArray*>(&object)) {
        std::vector<RetainPtr<NSObject>> objects;
        objects.reserve(array->count());
        for (const auto& element : *array) {
            objects.push_back(copyPropertyList(*element, level + 1));
            if (!objects.back())
                return nullptr;
        }
        return make<NSArray>(std::move(objects));
    }
    if (const auto* dictionary = dynamic_cast<const NSDictionary*>(&object)) {
        NSDictionary::Map entries;
        for (const auto& [key, value] : *dictionary) {
            auto copy = copyPropertyList(*value, level + 1);
            if (!copy)
                return nullptr;
            entries.emplace_hint(entries.end(), key, std::move(copy));
        }
        return make<NSDictionary>(std::move(entries));
    }
    const auto* text = dynamic_cast<const NSBoxedString*>(&object);
    const bool isValue = (text && text->string()) || dynamic_cast<const NSNumber*>(&object)
        || dynamic_cast<const NSDate*>(&object) || dynamic_cast<const NSData*>(&object);
    return isValue ? const_cast<NSObject*>(&object) : nullptr;
}
