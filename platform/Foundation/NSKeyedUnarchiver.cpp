#include <Foundation/NSKeyedArchiver.h>

#include "Foundation/ArchiveFormat.h"
#include "Foundation/CocoaError.h"
#include "Foundation/CodingClasses.h"
#include "Foundation/PropertyList.h"

#include <Foundation/NSArray.h>
#include <Foundation/NSData.h>
#include <Foundation/NSDate.h>
#include <Foundation/NSNull.h>
#include <Foundation/NSNumber.h>

#include <utility>
#include <vector>

namespace {

/// The objects of an array or dictionary may only be of these classes.
bool isValueClass(const NSCodingClassInfo& info)
{
    return !info.initWithCoder;
}

/// The entry of the form's class if that is one of Foundation's, else null.
const NSCodingClassInfo* valueClassOf(const NSObject& form)
{
    if (dynamic_cast<const NSBoxedString*>(&form))
        return &valueClass<NSBoxedString>();
    if (dynamic_cast<const NSNumber*>(&form))
        return &valueClass<NSNumber>();
    if (dynamic_cast<const NSDate*>(&form))
        return &valueClass<NSDate>();
    if (dynamic_cast<const NSData*>(&form))
        return &valueClass<NSData>();
    if (dynamic_cast<const NSArray*>(&form))
        return &valueClass<NSArray>();
    return nullptr;
}

class Unarchiver final : public NSCoder {
public:
    explicit Unarchiver(const NSArray& forms)
        : _forms(forms)
        , _entries(forms.count())
    {
    }

    /// The object with an index; null when it is not of an allowed class or the archive is invalid.
    RetainPtr<NSObject> object(const NSNumber& index, const NSAllowedClass& allowed)
    {
        auto result = objectIf(index, [&](const NSCodingClassInfo& info) { return allows(allowed, info); });
        return _hasFailed ? nullptr : result;
    }
    bool hasFailed() const { return _hasFailed; }

    void encodeBool(bool, NSString) override { }
    void encodeInteger(NSInteger, NSString) override { }
    void encodeDouble(double, NSString) override { }
    void encodeObject(const NSObject*, NSString) override { }

    bool containsValueForKey(NSString key) const override { return _values && _values->objectForKey(key); }
    bool decodeBoolForKey(NSString key) override
    {
        const auto* value = number(key);
        return value && value->boolValue();
    }
    NSInteger decodeIntegerForKey(NSString key) override
    {
        const auto* value = number(key);
        return value ? value->integerValue() : 0;
    }
    double decodeDoubleForKey(NSString key) override
    {
        const auto* value = number(key);
        return value ? value->doubleValue() : 0;
    }

protected:
    RetainPtr<NSObject> decodeObject(const NSString& key, const NSAllowedClass& allowed) override
    {
        const NSObject* reference = _values ? _values->objectForKey(key) : nullptr;
        return reference
            ? referenced(*reference, [&](const NSCodingClassInfo& info) { return allows(allowed, info); })
            : nullptr;
    }

private:
    enum class State { Untouched, BeingMade, Made };
    struct Entry {
        State state = State::Untouched;
        RetainPtr<NSObject> object;
        const NSCodingClassInfo* info = nullptr;
    };

    RetainPtr<NSObject> fail()
    {
        _hasFailed = true;
        return nullptr;
    }

    const NSNumber* number(const NSString& key)
    {
        const NSObject* value = _values ? _values->objectForKey(key) : nullptr;
        const auto* found = dynamic_cast<const NSNumber*>(value);
        if (value && !found)
            fail();
        return found;
    }

    /// The object of a reference; null for the reference to null.
    template <class IsAllowed> RetainPtr<NSObject> referenced(const NSObject& form, IsAllowed isAllowed)
    {
        const auto* reference = dynamic_cast<const NSDictionary*>(&form);
        if (!reference)
            return fail();
        if (reference->count() == 0)
            return nullptr;
        const auto* index = dynamic_cast<const NSNumber*>(reference->objectForKey(kArchiveReferenceKey));
        return index && reference->count() == 1 ? objectIf(*index, isAllowed) : fail();
    }

    template <class IsAllowed> RetainPtr<NSObject> objectIf(const NSNumber& index, IsAllowed isAllowed)
    {
        const NSInteger place = index.integerValue();
        if (_hasFailed || index.kind() != NSNumber::Kind::Integer || place < 0
            || static_cast<NSUInteger>(place) >= _entries.size())
            return fail();
        Entry& entry = _entries[static_cast<std::size_t>(place)];
        // An object that is still being made holds itself: it cannot be returned yet.
        if (entry.state == State::BeingMade)
            return fail();
        const NSObject& form = *_forms.objectAtIndex(static_cast<NSUInteger>(place));
        if (entry.state == State::Untouched)
            entry.info = classOf(form);
        // Tested before anything is made: no code of a class that is not allowed may run.
        if (!entry.info || !isAllowed(*entry.info))
            return fail();
        if (entry.state == State::Untouched) {
            entry.state = State::BeingMade;
            entry.object = made(form, *entry.info);
            entry.state = State::Made;
        }
        return entry.object;
    }

    /// The class of a form's object; null when it is not registered.
    static const NSCodingClassInfo* classOf(const NSObject& form)
    {
        const auto* record = dynamic_cast<const NSDictionary*>(&form);
        if (!record)
            return valueClassOf(form);
        const std::string name = record->stringForKey(kArchiveClassKey).UTF8String();
        if (name == kArchiveDictionaryName)
            return &valueClass<NSDictionary>();
        if (name == kArchiveNullName)
            return &valueClass<NSNull>();
        return codingClassNamed(name);
    }

    RetainPtr<NSObject> made(const NSObject& form, const NSCodingClassInfo& info)
    {
        if (_depth == kDeepestArchive)
            return fail();
        ++_depth;
        RetainPtr<NSObject> result;
        if (const auto* array = dynamic_cast<const NSArray*>(&form))
            result = madeArray(*array);
        else if (const auto* record = dynamic_cast<const NSDictionary*>(&form))
            result = madeFromRecord(*record, info);
        else
            result = const_cast<NSObject*>(&form);
        --_depth;
        return result;
    }

    RetainPtr<NSObject> madeArray(const NSArray& references)
    {
        std::vector<RetainPtr<NSObject>> objects;
        objects.reserve(references.count());
        for (const auto& reference : references) {
            objects.push_back(referenced(*reference, isValueClass));
            if (!objects.back())
                return fail();
        }
        return make<NSArray>(std::move(objects));
    }

    RetainPtr<NSObject> madeFromRecord(const NSDictionary& record, const NSCodingClassInfo& info)
    {
        const auto* values = dynamic_cast<const NSDictionary*>(record.objectForKey(kArchiveValuesKey));
        if (!values)
            return fail();
        if (info.type == typeid(NSNull))
            return NSNull::null();
        if (info.type == typeid(NSDictionary)) {
            NSDictionary::Map objects;
            for (const auto& [key, reference] : *values) {
                auto object = referenced(*reference, isValueClass);
                if (!object)
                    return fail();
                objects.emplace_hint(objects.end(), key, std::move(object));
            }
            return make<NSDictionary>(std::move(objects));
        }
        const NSDictionary* const outer = std::exchange(_values, values);
        auto object = info.initWithCoder(this);
        _values = outer;
        return object;
    }

    const NSArray& _forms;
    std::vector<Entry> _entries;
    const NSDictionary* _values = nullptr; ///< of the object that is being made
    int _depth = 0;
    bool _hasFailed = false;
};

} // namespace

RetainPtr<NSObject> NSKeyedUnarchiver::unarchive(
    const NSData* data, const NSAllowedClass& allowed, RetainPtr<NSError>* error)
{
    if (error)
        *error = nullptr;
    const auto refuse = [error](NSInteger code, const char* why) {
        setCocoaError(error, code, why);
        return nullptr;
    };
    if (!data || data->length() == 0)
        return refuse(NSCoderValueNotFoundError, "There is no archive.");
    if (data->length() > kLargestArchive)
        return refuse(NSCoderReadCorruptError, "The archive is too large.");
    const auto list = readPropertyList({static_cast<const char*>(data->bytes()), data->length()});
    const auto* top = dynamic_cast<const NSDictionary*>(list.get());
    const auto entry = [top](const char* key) { return top ? top->objectForKey(key) : nullptr; };
    const auto* version = dynamic_cast<const NSNumber*>(entry(kArchiveVersionKey));
    const auto* root = dynamic_cast<const NSNumber*>(entry(kArchiveRootKey));
    const auto* forms = dynamic_cast<const NSArray*>(entry(kArchiveObjectsKey));
    if (!version || version->integerValue() != kArchiveVersion || !root || !forms)
        return refuse(NSCoderReadCorruptError, "The bytes are not an archive.");
    try {
        Unarchiver unarchiver(*forms);
        if (auto object = unarchiver.object(*root, allowed))
            return object;
        return unarchiver.hasFailed()
            ? refuse(NSCoderReadCorruptError, "The archive is damaged, or holds objects of other classes.")
            : refuse(NSCoderInvalidValueError, "The object cannot be recreated from what the archive holds.");
    } catch (const std::exception&) {
        return refuse(NSCoderReadCorruptError, "The object cannot be recreated from what the archive holds.");
    }
}
