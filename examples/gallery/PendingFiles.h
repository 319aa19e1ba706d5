#pragma once

#include <filesystem>
#include <string>
#include <vector>

class NSData;

/// Folders that go again if nothing was put into them.
class NewFolders {
public:
    NewFolders() = default;
    NewFolders(const NewFolders&) = delete;
    NewFolders& operator=(const NewFolders&) = delete;
    ~NewFolders();

    /// Makes a folder, and those on the way to it, where they are missing. Throws GalleryError when one
    /// cannot be made.
    void make(const std::filesystem::path& folder);

private:
    std::vector<std::filesystem::path> _made; ///< outer ones first
};

/// Files of one folder that appear when all of them are complete, or not at all.
///
/// Until then they are in a hidden folder within it. What was made and not finished goes with this object,
/// folders included.
class PendingFiles {
public:
    /// Makes the folder where it is missing. Throws GalleryError when that cannot be, or when nothing can be
    /// written there.
    explicit PendingFiles(const std::filesystem::path& folder);
    PendingFiles(const PendingFiles&) = delete;
    PendingFiles& operator=(const PendingFiles&) = delete;
    ~PendingFiles();

    /// Writes a file that is to be called `name`. Throws GalleryError when it cannot be written, or when a
    /// folder has that name.
    void add(const std::string& name, const NSData& bytes);

    /// Gives all files their names, in place of older files, and answers their paths. Throws GalleryError
    /// when one cannot get its name.
    std::vector<std::filesystem::path> finish();

private:
    std::filesystem::path _folder;
    NewFolders _newFolders;
    std::filesystem::path _draft; ///< the hidden folder
    std::vector<std::string> _names;
};
