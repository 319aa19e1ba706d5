#pragma once

#include <Foundation/NSObject.h>

#include <map>
#include <vector>

/// Objects, none of them null, with strings as their keys. Iterates in the order of the keys' code units.
///
/// Immutable, unless it is an NSMutableDictionary; then safe on any thread if its objects are.
class KORVID_EXPORT NSDictionary : public NSObject {
public:
    /// The entries by key.
    using Map = std::map<NSString, RetainPtr<NSObject>>;

    NSDictionary();
    /// Takes over the entries; those with a null key or object are left out.
    explicit NSDictionary(Map entries);

    /// Number of entries.
    NSUInteger count() const { return _entries.size(); }
    /// Borrowed; null when there is none under that key.
    NSObject* objectForKey(const NSString& key) const;
    /// The string under a key; null when there is none or another kind of object.
    NSString stringForKey(const NSString& key) const;
    /// The keys, in the order of their code units.
    std::vector<NSString> allKeys() const;

    /// For `for (const auto& [key, object] : *dictionary)`.
    auto begin() const { return _entries.begin(); }
    /// The end of that iteration.
    auto end() const { return _entries.end(); }

    /// True for this dictionary, and for another one with equal objects under the same keys. Takes time
    /// proportional to the number of nested collections, also where many of them share the same objects.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// "key = object;" for each entry, in braces.
    NSString description() const override;

protected:
    ~NSDictionary() override;

    Map _entries; ///< without null keys and objects
};

/// A dictionary that can change. One thread at a time.
class KORVID_EXPORT NSMutableDictionary : public NSDictionary {
public:
    /// The constructors of NSDictionary.
    using NSDictionary::NSDictionary;

    /// Retains the object, which takes the place of one that is there. A null key or object raises
    /// NSInvalidArgumentException.
    void setObject(RetainPtr<NSObject> object, const NSString& key);
    /// A key without an object does nothing.
    void removeObjectForKey(const NSString& key);
    /// Removes every entry. An object that is destroyed by that finds the dictionary empty.
    void removeAllObjects();

protected:
    ~NSMutableDictionary() override;
};
