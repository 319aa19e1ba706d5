#pragma once

#include <Foundation/NSObject.h>

#include <cstddef>
#include <memory>
#include <utility>

class NSArray;
class NSData;
class NSDictionary;
class UserDefaultsStore;

/// The application's settings, kept from one run to the next.
///
/// They live in one XML property list, `<bundle identifier>.plist` in the user's configuration folder
/// (`XDG_CONFIG_HOME`, else `~/.config`). A setting is in the file when its setter returns, so a process
/// that is killed loses nothing. Several processes may write: each change is merged, under a lock, into what
/// the file holds by then. Reading is from memory; changes of other processes show after the next setter or
/// `synchronize()`.
///
/// Values keep their types: text, number (truth value, integer, real with every bit), date, data, array,
/// dictionary. Anything else, also inside a collection, is logged and not stored.
///
/// A damaged file is logged, kept beside as `<file>.damaged` and taken for empty. When the file cannot be
/// read or written, the values are kept in memory, that is logged once, and the next setter tries again.
///
/// Safe on any thread.
class KORVID_EXPORT NSUserDefaults : public NSObject {
public:
    /// The settings of this application. Never null, never destroyed.
    static NSUserDefaults* standardUserDefaults();

    /// The value under `key`, else the registered one, else null; null for a null key.
    RetainPtr<NSObject> objectForKey(NSString key) const;
    /// The text under `key`; a number as text; null for anything else.
    NSString stringForKey(NSString key) const;
    /// The number under `key`; a text is read as one as far as it goes; 0 for anything else.
    double doubleForKey(NSString key) const;
    /// The same as an integer. Reals are cut off towards zero and kept within the integer's range.
    NSInteger integerForKey(NSString key) const;
    /// True for a number other than 0 and a text that begins with "Y", "y", "T", "t" or a number other than
    /// 0.
    bool boolForKey(NSString key) const;
    /// The value under `key` if it is of the class, else null.
    RetainPtr<NSData> dataForKey(NSString key) const;
    RetainPtr<NSArray> arrayForKey(NSString key) const;
    RetainPtr<NSDictionary> dictionaryForKey(NSString key) const;

    /// Stores a copy of `object` under `key`; null removes what is there. A null key is ignored.
    void setObject(const NSObject* object, NSString key);
    void setObject(NSString text, NSString key);
    void setObject(std::nullptr_t, NSString key) { removeObjectForKey(std::move(key)); }
    void setDouble(double value, NSString key);
    void setInteger(NSInteger value, NSString key);
    void setBool(bool value, NSString key);
    /// Removes the value; a registered one shows again.
    void removeObjectForKey(NSString key);

    /// Values that are answered where nothing is stored, for this run only. Adds to what was registered
    /// before; null does nothing.
    void registerDefaults(const NSDictionary* values);

    /// Takes over what other processes have changed, and tries again to write what could not be written.
    /// False when there still is something that could not be.
    bool synchronize();

protected:
    ~NSUserDefaults() override;

private:
    friend class UserDefaultsFile;
    NSUserDefaults();

    std::unique_ptr<UserDefaultsStore> _store;
};
