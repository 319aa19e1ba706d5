#include "Foundation/PropertyList.h"

#include <Foundation/NSArray.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSData.h>
#include <Foundation/NSDate.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSNumber.h>

namespace {

/// Copies one object with all that it holds.
class Copier {
public:
    RetainPtr<NSObject> copy(const NSObject& object, int level)
    {
        if (level >= kDeepestPropertyList || ++_count > kMostPropertyListObjects)
            return nullptr;
        if (const auto* array = dynamic_cast<const NSArray*>(&object))
            return copyArray(*array, level);
        if (const auto* dictionary = dynamic_cast<const NSDictionary*>(&object))
            return copyDictionary(*dictionary, level);
        const auto* string = dynamic_cast<const NSBoxedString*>(&object);
        const bool isValue = (string && string->string()) || dynamic_cast<const NSNumber*>(&object)
            || dynamic_cast<const NSDate*>(&object) || dynamic_cast<const NSData*>(&object);
        return isValue ? const_cast<NSObject*>(&object) : nullptr;
    }

private:
    RetainPtr<NSObject> copyArray(const NSArray& array, int level)
    {
        std::vector<RetainPtr<NSObject>> objects;
        objects.reserve(array.count());
        for (const auto& element : array) {
            objects.push_back(copy(*element, level + 1));
            if (!objects.back())
                return nullptr;
        }
        return make<NSArray>(std::move(objects));
    }

    RetainPtr<NSObject> copyDictionary(const NSDictionary& dictionary, int level)
    {
        NSDictionary::Map entries;
        for (const auto& [key, value] : dictionary) {
            auto copied = copy(*value, level + 1);
            if (!copied)
                return nullptr;
            entries.emplace_hint(entries.end(), key, std::move(copied));
        }
        return make<NSDictionary>(std::move(entries));
    }

    std::size_t _count = 0;
};

} // namespace

RetainPtr<NSObject> copyPropertyList(const NSObject& object, int level)
{
    return Copier().copy(object, level);
}
