#pragma once

#include <Foundation/Foundation.h>

#include "Foundation/testing/UserDefaultsFile.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>
#include <sstream>

inline NSUserDefaults& defaults()
{
    return *NSUserDefaults::standardUserDefaults();
}

inline std::string contentOf(const std::filesystem::path& path)
{
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// Files of the folder apart from the property list and its lock.
inline std::vector<std::string> otherFiles(const TemporaryFolder& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        const std::string name = entry.path().filename().string();
        if (name != "app.plist" && name != "app.plist.lock")
            names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Settings in a file of the test's own.
class NSUserDefaultsTest : public testing::Test {
protected:
    const TemporaryFolder folder;
    const std::string path = folder.file("app.plist");
    std::optional<UserDefaultsFile> file{std::in_place, NSString(path)};

    /// Forgets what is in memory, like a new process.
    void startAnew()
    {
        file.reset();
        file.emplace(NSString(path));
    }
};
