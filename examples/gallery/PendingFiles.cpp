#include "PendingFiles.h"

#include "GalleryError.h"

#include <Foundation/NSData.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <system_error>

namespace fs = std::filesystem;

namespace {

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

/// Writes a new file. Its path need not be valid in any text encoding.
std::error_code writeFile(const fs::path& path, const NSData& bytes)
{
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (!file)
        return lastError();
    std::error_code error;
    if (std::fwrite(bytes.bytes(), 1, bytes.length(), file) != bytes.length())
        error = lastError();
    if (std::fclose(file) != 0 && !error)
        error = lastError();
    return error;
}

[[noreturn]] void throwCannot(const std::string& action, const fs::path& path, const std::string& reason)
{
    throw GalleryError("cannot " + action + " " + quoted(path) + ": " + reason);
}

} // namespace

void NewFolders::make(const fs::path& folder)
{
    fs::path path;
    for (const auto& component : folder) {
        path /= component;
        std::error_code error;
        if (fs::is_directory(path, error))
            continue;
        if (fs::create_directory(path, error))
            _made.push_back(path);
        else if (error)
            throwCannot("make the folder", folder, error.message());
    }
}

NewFolders::~NewFolders()
{
    // Innermost first; a folder that is not empty is not removed, nor are its parents.
    std::error_code ignored;
    for (auto path = _made.rbegin(); path != _made.rend(); ++path)
        fs::remove(*path, ignored);
}

PendingFiles::PendingFiles(const fs::path& folder)
    : _folder(folder)
{
    _newFolders.make(folder);
    std::string draft = folder / ".gallery-XXXXXX";
    if (!mkdtemp(draft.data()))
        throwCannot("write in the folder", folder, lastError().message());
    _draft = draft;
}

PendingFiles::~PendingFiles()
{
    std::error_code ignored;
    fs::remove_all(_draft, ignored);
}

void PendingFiles::add(const std::string& name, const NSData& bytes)
{
    std::error_code ignored;
    if (fs::is_directory(_folder / name, ignored))
        throwCannot("write", _folder / name, "a folder has that name");
    if (const auto error = writeFile(_draft / name, bytes))
        throwCannot("write in the folder", _folder, error.message());
    _names.push_back(name);
}

std::vector<fs::path> PendingFiles::finish()
{
    std::vector<fs::path> paths;
    for (const auto& name : _names) {
        paths.push_back(_folder / name);
        std::error_code error;
        fs::rename(_draft / name, paths.back(), error);
        if (error)
            throwCannot("write", paths.back(), error.message());
    }
    return paths;
}
