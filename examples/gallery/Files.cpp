#include "Files.h"

#include "GalleryError.h"

#include <AppKit/NSBitmapImageRep.h>
#include <Foundation/NSData.h>
#include <Foundation/NSURL.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <system_error>
#include <unistd.h>

namespace {

/// The largest file that is read: a device may go on without end.
constexpr std::size_t kMostBytes = std::size_t(256) << 20;

/// Discards what is written to standard error as long as it lives.
class Silence {
public:
    Silence()
        : _standardError(dup(STDERR_FILENO))
    {
        const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (_standardError >= 0 && null >= 0)
            dup2(null, STDERR_FILENO);
        close(null);
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

std::string readFile(const std::string& name, const std::string& what)
{
    const auto failure = [&] {
        return GalleryError(
            "cannot read " + what + " from " + quoted(name) + ": " + std::generic_category().message(errno));
    };
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name.c_str(), "rb"), std::fclose);
    if (!file)
        throw failure();
    std::string bytes;
    std::array<char, 1 << 16> buffer;
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
        bytes.append(buffer.data(), count);
        if (bytes.size() > kMostBytes)
            throw GalleryError(quoted(name) + " is too large: more than 256 MB");
    }
    if (std::ferror(file.get()))
        throw failure();
    if (bytes.empty())
        throw GalleryError(quoted(name) + " is empty");
    return bytes;
}

RetainPtr<CGImage> readPicture(const std::string& name)
{
    const std::string bytes = readFile(name, "a picture");
    const auto picture = [&] {
        // The decoder prints messages of its own about damaged files.
        const Silence silence;
        return NSBitmapImageRep::initWithData(NSData::dataWithBytes(bytes.data(), bytes.size()).get());
    }();
    if (!picture)
        throw GalleryError(quoted(name) + " is not a PNG file, or it is damaged or too large");
    return picture->CGImage();
}

RetainPtr<ZRPDF> readPDF(const std::string& name)
{
    readFile(name, "a PDF document"); // for the reason why it cannot be read
    auto pdf = ZRPDF::initWithURL(NSURL::fileURLWithPath(NSString(name)));
    if (!pdf)
        throw GalleryError(quoted(name)
            + " is not a PDF document, or it is damaged, needs a password, has no pages or is too large");
    return pdf;
}
