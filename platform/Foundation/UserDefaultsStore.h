#pragma once

#include "Foundation/FileDescriptor.h"

#include <Foundation/NSObject.h>

#include <ctime>
#include <map>
#include <mutex>
#include <string>
#include <sys/types.h>

/// Settings in one property list, which several processes may change.
///
/// A change is written at once: under a lock on `<file>.lock`, which the system gives up for a process that
/// is killed, the file is read again if it changed, the change is merged, all of it goes to `<file>.tmp` and
/// that takes the file's place. No reader sees an incomplete file, and the `<file>.tmp` of a killed process
/// is overwritten by the next change. Safe on any thread.
class UserDefaultsStore {
public:
    explicit UserDefaultsStore(std::string path);

    /// The stored value, else the registered one, else null.
    RetainPtr<NSObject> value(const NSString& key);
    /// Stores a property list, or removes the value for null. Logs, once, when that cannot be written; the
    /// next change then tries again.
    void set(const NSString& key, RetainPtr<NSObject> value);
    void addRegistered(const NSString& key, RetainPtr<NSObject> value);
    /// Reads what other processes have written, and writes what could not be written before. True when
    /// nothing is left to write.
    bool synchronize();

private:
    using Values = std::map<NSString, RetainPtr<NSObject>>;

    /// Distinguishes one state of a file from another.
    struct Stamp {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        timespec changed{};

        bool operator==(const Stamp& other) const;
    };
    static Stamp stampOf(int descriptor);

    bool read(bool isLocked);
    bool setDamagedAside();
    bool writePending();
    bool write(const Values& values);
    FileDescriptor lock();
    bool fail(const char* what);

    const std::string _path;
    std::mutex _mutex;
    Values _values;  ///< what the file holds
    Values _pending; ///< what is still to be written; null removes
    Values _registered;
    bool _isRead = false;
    bool _hasLoggedFailure = false;
    FileDescriptor _file; ///< kept open, so that no other file gets its inode number
    Stamp _stamp;
};
