#pragma once

#include "GalleryProcess.h"
#include "Picture.h"

#include <stdexcept>
#include <unistd.h>

/// What the gallery writes when nothing special is asked of it, for all tests that only look at that.
///
/// Drawing it all takes long: it is done once in a process, when the first test wants it. The files lie in
/// the folder that stands for the user's home, and go with that; each process has its own, so that the child
/// of a death test neither waits for its parent's nor leaves any behind.
class GalleryPictures {
public:
    static const GalleryPictures& shared()
    {
        static const GalleryPictures pictures;
        return pictures;
    }

    /// Where they are; neither this folder nor the one around it had been there before.
    const std::filesystem::path& folder() const { return _folder; }
    /// What the program said.
    const ProcessResult& result() const { return _result; }
    /// The path of one of them. Throws, which fails the test, when they could not be made.
    std::string file(const std::string& name) const
    {
        if (_result.exitCode != 0)
            throw std::runtime_error("the gallery could not write its pictures: " + _result.error);
        return _folder / name;
    }
    /// That of a page at a scale of 1 or 2.
    Picture page(const std::string& name, int scale) const
    {
        return {file(name + (scale == 1 ? ".png" : "@2x.png")), scale};
    }

private:
    GalleryPictures()
        : _folder(std::filesystem::path(std::getenv("KORVID_TEST_HOME"))
            / ("gallery-" + std::to_string(getpid())) / "pictures")
        , _result(runGallery({"--snapshot", _folder}))
    {
    }

    std::filesystem::path _folder;
    ProcessResult _result;
};
