#pragma once

#include <filesystem>
#include <string>
#include <vector>

class NSData;

/// New folders, removed at the end of scope if they are still empty.
class NewFolders {
public:
    NewFolders() = default;
    NewFolders(const NewFolders&) = delete;
    NewFolders& operator=(const NewFolders&) = delete;
    ~NewFolders();

    /// Makes a folder and its parents where they are missing. Throws GalleryError when one cannot be made.
    void make(const std::filesystem::path& folder);

private:
    std::vector<std::filesystem::path> _made; ///< outer ones first
};

/// Files that appear in a folder when all of them are complete, or not at all.
///
/// Until `finish` they lie in a hidden subfolder. The destructor removes unfinished files and the folders
/// that were made for them.
class PendingFiles {
public:
    /// Makes the folder where it is missing. Throws GalleryError when it cannot be made or written.
    explicit PendingFiles(const std::filesystem::path& folder);
    PendingFiles(const PendingFiles&) = delete;
    PendingFiles& operator=(const PendingFiles&) = delete;
    ~PendingFiles();

    /// Writes a file that `finish` will name `name`. Throws GalleryError when it cannot be written, or when a
    /// folder has that name.
    void add(const std::string& name, const NSData& bytes);

    /// Moves all files to their names, replacing older files, and returns their paths. Throws GalleryError
    /// when one cannot be moved.
    std::vector<std::filesystem::path> finish();

private:
    std::filesystem::path _folder;
    NewFolders _newFolders;
    std::filesystem::path _draft; ///< the hidden subfolder
    std::vector<std::string> _names;
};
