#pragma once

#include <Foundation/NSString.h>

/// Makes `NSBundle::mainBundle()` read another resource folder, until it goes out of scope. One at a time.
class KORVID_EXPORT MainBundleFolder {
public:
    /// From now on resources are those below `path`; null means no folder at all. The languages are read from
    /// the environment anew.
    explicit MainBundleFolder(const NSString& path);
    MainBundleFolder(const MainBundleFolder&) = delete;
    MainBundleFolder& operator=(const MainBundleFolder&) = delete;
    /// Searches folder and languages anew, as at the start of the process.
    ~MainBundleFolder();
};
