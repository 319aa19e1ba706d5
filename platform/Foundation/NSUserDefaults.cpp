#include <Foundation/NSUserDefaults.h>

#include "Foundation/PropertyList.h"
#include "Foundation/UserDefaultsStore.h"
#include "Foundation/testing/UserDefaultsFile.h"

#include <Foundation/NSArray.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSBundle.h>
#include <Foundation/NSData.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSLog.h>
#include <Foundation/NSNumber.h>

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace {

/// The user's configuration folder, by the rules for XDG base directories.
std::string configurationFolder()
{
    // Relative paths are invalid there.
    if (const char* folder = std::getenv("XDG_CONFIG_HOME"); folder && *folder == '/')
        return folder;
    if (const char* home = std::getenv("HOME"); home && *home == '/')
        return std::string(home) + "/.config";
    const passwd* user = getpwuid(getuid());
    return std::string(user && user->pw_dir ? user->pw_dir : "") + "/.config";
}

/// The application's own file.
std::string standardPath()
{
    std::string name = NSBundle::mainBundle()->bundleIdentifier().UTF8String();
    for (char& c : name) {
        if (c == '/' || c == '\0')
            c = '-'; // one component of a path
    }
    return configurationFolder() + "/" + name + ".plist";
}

/// Whether a string means yes: "YES", "true", "1" and the like, after blanks, a sign and zeros.
bool meansYes(const NSString& string)
{
    const auto units = string.view();
    std::size_t i = 0;
    while (i < units.size() && (units[i] == ' ' || units[i] == '\t' || units[i] == '\n'))
        ++i;
    if (i < units.size() && (units[i] == '+' || units[i] == '-'))
        ++i;
    while (i < units.size() && units[i] == '0')
        ++i;
    return i < units.size()
        && std::u16string_view(u"YyTt123456789").find(units[i]) != std::u16string_view::npos;
}

/// The object if it is of class `T`, else null.
template <class T> RetainPtr<T> as(const RetainPtr<NSObject>& object)
{
    return dynamic_cast<T*>(object.get());
}

} // namespace

NSUserDefaults::NSUserDefaults()
    : _store(std::make_unique<UserDefaultsStore>(standardPath()))
{
}

NSUserDefaults::~NSUserDefaults() = default;

NSUserDefaults* NSUserDefaults::standardUserDefaults()
{
    static NSUserDefaults* const defaults = new NSUserDefaults;
    return defaults;
}

RetainPtr<NSObject> NSUserDefaults::objectForKey(NSString key) const
{
    return key ? _store->value(key) : nullptr;
}

NSString NSUserDefaults::stringForKey(NSString key) const
{
    const auto object = objectForKey(key);
    if (const auto text = as<NSBoxedString>(object))
        return text->string();
    const auto number = as<NSNumber>(object);
    return number ? number->stringValue() : NSString();
}

double NSUserDefaults::doubleForKey(NSString key) const
{
    const auto object = objectForKey(key);
    if (const auto text = as<NSBoxedString>(object))
        return text->string().doubleValue();
    const auto number = as<NSNumber>(object);
    return number ? number->doubleValue() : 0;
}

NSInteger NSUserDefaults::integerForKey(NSString key) const
{
    const auto object = objectForKey(key);
    if (const auto text = as<NSBoxedString>(object))
        return text->string().integerValue();
    const auto number = as<NSNumber>(object);
    return number ? number->integerValue() : 0;
}

bool NSUserDefaults::boolForKey(NSString key) const
{
    const auto object = objectForKey(key);
    if (const auto text = as<NSBoxedString>(object))
        return meansYes(text->string());
    const auto number = as<NSNumber>(object);
    return number && number->boolValue();
}

RetainPtr<NSData> NSUserDefaults::dataForKey(NSString key) const
{
    return as<NSData>(objectForKey(key));
}

RetainPtr<NSArray> NSUserDefaults::arrayForKey(NSString key) const
{
    return as<NSArray>(objectForKey(key));
}

RetainPtr<NSDictionary> NSUserDefaults::dictionaryForKey(NSString key) const
{
    return as<NSDictionary>(objectForKey(key));
}

void NSUserDefaults::setObject(RetainPtr<const NSObject> object, NSString key)
{
    if (!key)
        return;
    if (!object)
        return store(nullptr, key);
    if (auto copy = copyPropertyList(*object, 1))
        return store(std::move(copy), key);
    NSLog("User defaults: the value for \"%@\" is not made of strings, numbers, dates, data, arrays and "
          "dictionaries only, or is too large; it is not stored",
        key);
}

/// Stores the value, or removes it for null, between the notifications of the key's observers.
void NSUserDefaults::store(RetainPtr<NSObject> value, const NSString& key)
{
    willChangeValueForKey(key);
    _store->set(key, std::move(value));
    didChangeValueForKey(key);
}

void NSUserDefaults::setObject(NSString text, NSString key)
{
    setObject(box(text), std::move(key));
}

void NSUserDefaults::setDouble(double value, NSString key)
{
    setObject(NSNumber::numberWithDouble(value), std::move(key));
}

void NSUserDefaults::setInteger(NSInteger value, NSString key)
{
    setObject(NSNumber::numberWithInteger(value), std::move(key));
}

void NSUserDefaults::setBool(bool value, NSString key)
{
    setObject(NSNumber::numberWithBool(value), std::move(key));
}

void NSUserDefaults::removeObjectForKey(NSString key)
{
    setObject(RetainPtr<const NSObject>(), std::move(key));
}

void NSUserDefaults::registerDefaults(RetainPtr<const NSDictionary> values)
{
    if (!values)
        return;
    for (const auto& [key, value] : *values) {
        auto copy = copyPropertyList(*value);
        if (!copy) {
            NSLog("User defaults: the registered value for \"%@\" is not a property list, or too large", key);
            continue;
        }
        willChangeValueForKey(key);
        _store->addRegistered(key, std::move(copy));
        didChangeValueForKey(key);
    }
}

RetainPtr<NSObject> NSUserDefaults::valueForKey(const NSString& key)
{
    return objectForKey(key);
}

bool NSUserDefaults::synchronize()
{
    return _store->synchronize();
}

UserDefaultsFile::UserDefaultsFile(const NSString& path)
{
    NSUserDefaults::standardUserDefaults()->_store = std::make_unique<UserDefaultsStore>(path.UTF8String());
}

UserDefaultsFile::~UserDefaultsFile()
{
    NSUserDefaults::standardUserDefaults()->_store = std::make_unique<UserDefaultsStore>(standardPath());
}
