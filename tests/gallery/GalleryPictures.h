#pragma once

#include "GalleryProcess.h"
#include "Page.h"
#include "Picture.h"

#include <stdexcept>
#include <unistd.h>

/// The pictures that the gallery writes without further options.
///
/// Drawing them takes long: they are created once per process, for the first test that needs them, in the
/// tests' home folder, and removed with it. Each process has its own, so that the child of a death test
/// neither waits for its parent's nor leaves any behind.
class GalleryPictures {
public:
    static const GalleryPictures& shared()
    {
        static const GalleryPictures pictures;
        return pictures;
    }

    /// The folder of the pictures. The gallery created it, and its parent.
    const std::filesystem::path& folder() const { return _folder; }
    /// What the program printed, and its exit code.
    const ProcessResult& result() const { return _result; }
    /// The path of a picture. Throws, which fails the test, if the pictures could not be created.
    std::string file(const std::string& name) const
    {
        if (_result.exitCode != 0)
            throw std::runtime_error("the gallery could not write its pictures: " + _result.error);
        return _folder / name;
    }
    /// The picture of a page at scale 1 or 2.
    Picture page(const std::string& name, int scale) const
    {
        return {file(name + (scale == 1 ? ".png" : "@2x.png")), scale};
    }

private:
    GalleryPictures()
        : _folder(std::filesystem::path(std::getenv("KORVID_TEST_HOME"))
            / ("gallery-" + std::to_string(getpid())) / "pictures")
        , _result(runGalleryProgram({"--snapshot", _folder}))
    {
    }

    std::filesystem::path _folder;
    ProcessResult _result;
};

/// The picture of a page with one card, in the card's coordinates.
class CardPicture {
public:
    CardPicture(const std::string& page, int scale)
        : _picture(GalleryPictures::shared().page(page, scale))
    {
    }
    Components at(CGFloat x, CGFloat y) const { return _picture.at(kGalleryMargin + x, kGalleryMargin + y); }

private:
    Picture _picture;
};
