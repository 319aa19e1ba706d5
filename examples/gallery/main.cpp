// The gallery: every view and service of the library in one window, or as pictures.

#include "Gallery.h"
#include "GalleryError.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace {

/// Prints to standard output, now, so that it is known whether it could be.
void print(const std::string& text)
{
    if (std::fputs(text.c_str(), stdout) == EOF || std::fflush(stdout) != 0)
        throw GalleryError("cannot write to standard output: " + std::generic_category().message(errno));
}

void runProgram(int argc, char** argv)
{
    const auto options = GalleryOptions::parse(argc, argv);
    if (options.help) {
        print(GalleryOptions::usage());
        return;
    }
    std::string names;
    for (const auto& path : runGallery(options))
        names += path.string() + "\n";
    print(names);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        runProgram(argc, argv);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "gallery: %s\n", error.what());
        return 2;
    }
}
