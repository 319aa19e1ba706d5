#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// A folder of its own that goes, with all that is in it, when it goes out of scope.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return _path; }
    /// The path of `name` in the folder; nothing is made.
    std::string file(std::string_view name) const { return (_path / name).string(); }
    /// Writes `content` to `name` (folders on the way are made) and returns the file's path.
    std::string write(std::string_view name, std::string_view content) const;

private:
    std::filesystem::path _path;
};
