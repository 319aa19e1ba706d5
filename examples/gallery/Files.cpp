#include "Files.h"

#include "GalleryError.h"

#include <AppKit/NSBitmapImageRep.h>
#include <Foundation/NSData.h>

#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace {

/// Lets nothing reach standard error as long as it lives.
class Silence {
public:
    Silence()
        : _standardError(dup(STDERR_FILENO))
    {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (_standardError >= 0 && nowhere >= 0)
            dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
    Silence(const Silence&) = delete;
    ~Silence()
    {
        dup2(_standardError, STDERR_FILENO);
        close(_standardError);
    }

private:
    int _standardError;
};

} // namespace

std::string readFile(const char* name, const std::string& what)
{
    std::ifstream stream(name, std::ios::binary);
    std::ostringstream bytes;
    if (!(bytes << stream.rdbuf()))
        throw GalleryError("cannot read " + what + " from " + quoted(name));
    return bytes.str();
}

RetainPtr<CGImage> readPicture(const char* name)
{
    const std::string bytes = readFile(name, "a picture");
    const auto picture = [&] {
        // The decoder writes remarks of its own on files that it does not like.
        const Silence silence;
        return NSBitmapImageRep::initWithData(NSData::dataWithBytes(bytes.data(), bytes.size()).get());
    }();
    if (!picture)
        throw GalleryError(quoted(name) + " is no PNG file, or it is damaged or too large");
    return picture->CGImage();
}
