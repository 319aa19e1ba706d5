#include <Foundation/NSCoder.h>

#include "Foundation/CodingClasses.h"

#include <Foundation/NSBoxedString.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <typeindex>

namespace {

struct Registry {
    std::mutex mutex;
    std::map<std::string, NSCodingClassInfo> classes;
    std::map<std::type_index, std::string> names;
};

/// Never destroyed, and created on first use: classes are registered while libraries are loaded.
Registry& registry()
{
    static Registry* const instance = new Registry;
    return *instance;
}

} // namespace

void _NSRegisterCodingClass(const char* name, const NSCodingClassInfo& info)
{
    Registry& known = registry();
    const std::lock_guard lock(known.mutex);
    if (!known.classes.emplace(name, info).second || !known.names.emplace(info.type, name).second) {
        std::fprintf(stderr, "NSCodingClass: \"%s\" or its class is already known\n", name);
        std::abort();
    }
}

const NSCodingClassInfo* codingClassNamed(const std::string& name)
{
    Registry& known = registry();
    const std::lock_guard lock(known.mutex);
    const auto at = known.classes.find(name);
    return at != known.classes.end() ? &at->second : nullptr;
}

std::string codingClassNameOf(const NSObject& object)
{
    Registry& known = registry();
    const std::lock_guard lock(known.mutex);
    const auto at = known.names.find(typeid(object));
    return at != known.names.end() ? at->second : std::string();
}

void NSCoder::encodeString(const NSString& value, NSString key)
{
    encodeObject(box(value).get(), std::move(key));
}

NSString NSCoder::decodeStringForKey(NSString key)
{
    const auto text = decodeObjectOfClass<NSBoxedString>(std::move(key));
    return text ? text->string() : NSString();
}
