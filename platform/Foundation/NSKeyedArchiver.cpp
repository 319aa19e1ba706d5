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

#include <unordered_map>
#include <utility>
#include <vector>

namespace {

class Archiver final : public NSCoder {
public:
    /// The whole archive; null, with the reason in `failure()`, when an object cannot be archived.
    RetainPtr<NSDictionary> archive(const NSObject& root)
    {
        const auto reference = add(&root);
        const auto* number = dynamic_cast<const NSDictionary*>(reference.get());
        if (!_failure.isNull() || !number)
            return nullptr;
        NSDictionary::Map top;
        top.emplace(kArchiveVersionKey, NSNumber::numberWithInteger(kArchiveVersion));
        top.emplace(kArchiveRootKey, number->objectForKey(kArchiveReferenceKey));
        top.emplace(kArchiveObjectsKey, make<NSArray>(std::move(_objects)));
        return make<NSDictionary>(std::move(top));
    }
    const NSString& failure() const { return _failure; }

    void encodeBool(bool value, NSString key) override { put(key, NSNumber::numberWithBool(value)); }
    void encodeInteger(NSInteger value, NSString key) override
    {
        put(key, NSNumber::numberWithInteger(value));
    }
    void encodeDouble(double value, NSString key) override { put(key, NSNumber::numberWithDouble(value)); }
    void encodeObject(const NSObject* object, NSString key) override { put(key, add(object)); }

    bool containsValueForKey(NSString) const override { return false; }
    bool decodeBoolForKey(NSString) override { return false; }
    NSInteger decodeIntegerForKey(NSString) override { return 0; }
    double decodeDoubleForKey(NSString) override { return 0; }

protected:
    RetainPtr<NSObject> decodeObject(const NSString&, const NSAllowedClass&) override { return nullptr; }

private:
    void put(const NSString& key, RetainPtr<NSObject> value)
    {
        if (key && _values)
            _values->insert_or_assign(key, std::move(value));
    }

    /// A reference to the object, which is added to the archive on its first call.
    RetainPtr<NSObject> add(const NSObject* object)
    {
        NSDictionary::Map reference;
        if (object && _failure.isNull()) {
            const auto [known, isNew] = _indexes.try_emplace(object, _objects.size());
            const std::size_t index = known->second;
            if (isNew) {
                // Retained, so that no other object gets this one's address.
                _encoded.emplace_back(const_cast<NSObject*>(object));
                _objects.emplace_back(NSNull::null()); // its place, which references from within it need
                _objects[index] = formOf(*object);
            }
            reference.emplace(
                kArchiveReferenceKey, NSNumber::numberWithInteger(static_cast<NSInteger>(index)));
        }
        return make<NSDictionary>(std::move(reference));
    }

    /// The object's form among `$objects`; null when it cannot be archived.
    RetainPtr<NSObject> formOf(const NSObject& object)
    {
        if (++_depth > kDeepestArchive)
            return fail("it is nested too deeply");
        RetainPtr<NSObject> form;
        if (const auto* array = dynamic_cast<const NSArray*>(&object)) {
            std::vector<RetainPtr<NSObject>> references;
            references.reserve(array->count());
            for (const auto& element : *array)
                references.push_back(add(element));
            form = make<NSArray>(std::move(references));
        } else if (const auto* dictionary = dynamic_cast<const NSDictionary*>(&object)) {
            NSDictionary::Map values;
            for (const auto& [key, value] : *dictionary)
                values.emplace_hint(values.end(), key, add(value));
            form = record(kArchiveDictionaryName, std::move(values));
        } else if (dynamic_cast<const NSNull*>(&object)) {
            form = record(kArchiveNullName, {});
        } else if (const auto* coding = dynamic_cast<const NSSecureCoding*>(&object)) {
            const std::string name = codingClassNameOf(object);
            if (name.empty())
                return fail("no NSCodingClass registers the class of " + object.description().UTF8String());
            NSDictionary::Map values;
            NSDictionary::Map* const outer = std::exchange(_values, &values);
            coding->encodeWithCoder(this);
            _values = outer;
            form = record(name.c_str(), std::move(values));
        } else {
            form = copyPropertyList(object); // the value itself
            if (!form)
                return fail(object.description().UTF8String() + " cannot be archived");
        }
        --_depth;
        return form;
    }

    static RetainPtr<NSObject> record(const char* name, NSDictionary::Map values)
    {
        NSDictionary::Map entries;
        entries.emplace(kArchiveClassKey, box(name));
        entries.emplace(kArchiveValuesKey, make<NSDictionary>(std::move(values)));
        return make<NSDictionary>(std::move(entries));
    }

    RetainPtr<NSObject> fail(const std::string& why)
    {
        if (_failure.isNull())
            _failure = NSString("The object cannot be archived: " + why);
        return nullptr;
    }

    std::vector<RetainPtr<NSObject>> _objects;
    std::vector<RetainPtr<NSObject>> _encoded;
    std::unordered_map<const NSObject*, std::size_t> _indexes;
    NSDictionary::Map* _values = nullptr; ///< of the object that is encoding itself
    int _depth = 0;
    NSString _failure;
};

} // namespace

RetainPtr<NSData> NSKeyedArchiver::archivedDataWithRootObject(
    const NSObject* object, bool, RetainPtr<NSError>* error)
{
    if (error)
        *error = nullptr;
    if (!object) {
        setCocoaError(error, NSCoderInvalidValueError, "There is no object to archive.");
        return nullptr;
    }
    Archiver archiver;
    const auto archive = archiver.archive(*object);
    const auto xml = archive ? writePropertyList(*archive) : std::nullopt;
    if (!xml) {
        setCocoaError(error, NSCoderInvalidValueError,
            archiver.failure() ? archiver.failure() : NSString("The object cannot be archived."));
        return nullptr;
    }
    return NSData::dataWithBytes(xml->data(), xml->size());
}
