#pragma once

#include <Foundation/NSString.h>

/// Makes `NSUserDefaults::standardUserDefaults()` use another file, until it goes out of scope. One at a
/// time.
///
/// Registered values and values that could not be written are forgotten at both ends.
class KORVID_EXPORT UserDefaultsFile {
public:
    /// From now on the settings are in the property list at `path`, which need not be there yet. Making a
    /// second one for the same path reads the file as a fresh process would.
    explicit UserDefaultsFile(const NSString& path);
    UserDefaultsFile(const UserDefaultsFile&) = delete;
    UserDefaultsFile& operator=(const UserDefaultsFile&) = delete;
    /// Goes back to the application's own file.
    ~UserDefaultsFile();
};
