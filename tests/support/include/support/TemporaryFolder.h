#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// A new empty folder, removed with its content at the end of the scope.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return _path; }
    /// The path of `name` in the folder; creates nothing.
    std::string file(std::string_view name) const { return (_path / name).string(); }
    /// Writes `content` to the file `name`, creates its parent folders, and returns its path.
    std::string write(std::string_view name, std::string_view content) const;

private:
    std::filesystem::path _path;
};
