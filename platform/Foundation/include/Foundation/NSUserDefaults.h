#pragma once

#include <Foundation/NSObject.h>

#include <cstddef>
#include <memory>
#include <utility>

class NSArray;
class NSData;
class NSDictionary;
class UserDefaultsStore;

/// The application's settings, which last from one run to the next. Safe on any thread.
///
/// They are stored in one XML property list, `<bundle identifier>.plist` in the user's configuration folder
/// (`XDG_CONFIG_HOME`, else `~/.config`). A setting is in the file when its setter returns, so a process
/// that is killed loses nothing. Several processes may write: each change is merged, under a lock, into what
/// the file holds by then. Values are read from memory; changes by other processes take effect with the next
/// setter or `synchronize()`.
///
/// Values keep their types: string, number (truth value, integer, real with every bit), date, data, array,
/// dictionary. Any other object, also inside a collection, is logged and not stored; so is a value of more
/// than a million objects or 512 levels.
///
/// A damaged file is logged, renamed to `<file>.damaged`, and counts as empty. When the file cannot be read
/// or written, for lack of permission, disk space or memory or because it is larger than 64 MB, that is
/// logged once, values are held in memory, the file is left as it is, and the next setter tries again.
///
/// Observers of a key, added with `addObserver`, are notified of each setter, removal and registration that
/// is carried out through this object, on the thread that does so and also when the new value is equal to the
/// old one. Keys with dots cannot be observed. Differs: Apple's class also notifies of changes by other
/// processes.
class KORVID_EXPORT NSUserDefaults : public NSObject {
public:
    /// The settings of this application. Never null, never destroyed.
    static NSUserDefaults* standardUserDefaults();

    /// The value under `key`, else the registered one, else null; null for a null key.
    RetainPtr<NSObject> objectForKey(NSString key) const;
    /// The string under `key`; a number as a string; null for anything else.
    NSString stringForKey(NSString key) const;
    /// The number under `key`; of a string, the number that it begins with; 0 for anything else.
    double doubleForKey(NSString key) const;
    /// The same as an integer. Reals are truncated towards zero and clamped to the integer's range.
    NSInteger integerForKey(NSString key) const;
    /// True for a number other than 0 and a string that begins with "Y", "y", "T", "t" or a number other than
    /// 0.
    bool boolForKey(NSString key) const;
    /// The value under `key` if it is of the class, else null.
    RetainPtr<NSData> dataForKey(NSString key) const;
    /// The array under `key`; null for anything else.
    RetainPtr<NSArray> arrayForKey(NSString key) const;
    /// The dictionary under `key`; null for anything else.
    RetainPtr<NSDictionary> dictionaryForKey(NSString key) const;

    /// Stores a copy of `object` under `key`; null removes the value. A null key is ignored. Like all
    /// setters, notifies observers of the key.
    void setObject(RetainPtr<const NSObject> object, NSString key);
    /// Stores a string; null removes the value.
    void setObject(NSString text, NSString key);
    /// Removes the value.
    void setObject(std::nullptr_t, NSString key) { removeObjectForKey(std::move(key)); }
    /// Stores a real number.
    void setDouble(double value, NSString key);
    /// Stores an integer.
    void setInteger(NSInteger value, NSString key);
    /// Stores a truth value.
    void setBool(bool value, NSString key);
    /// Removes the value; a registered one takes its place.
    void removeObjectForKey(NSString key);

    /// Sets values that are returned where nothing is stored, for this run only. Adds to what was registered
    /// before; null does nothing. Notifies observers of each key.
    void registerDefaults(RetainPtr<const NSDictionary> values);

    /// Takes over what other processes have changed, without notifying observers, and tries again to write
    /// what could not be written. False when there still is something that could not be.
    bool synchronize();

    /// The same as `objectForKey`.
    RetainPtr<NSObject> valueForKey(const NSString& key) override;

protected:
    ~NSUserDefaults() override;

private:
    friend class UserDefaultsFile;
    NSUserDefaults();

    void store(RetainPtr<NSObject> value, const NSString& key);

    std::unique_ptr<UserDefaultsStore> _store;
};
