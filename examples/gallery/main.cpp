// The gallery: every view and service of the library, in one window or as pictures.

#include "Gallery.h"
#include "GalleryError.h"
#include "Page.h"

#include <Foundation/NSException.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <new>
#include <string>
#include <system_error>

namespace {

/// Prints to standard output and flushes it, so that a failure is noticed here.
void print(const std::string& text)
{
    if (std::fputs(text.c_str(), stdout) == EOF || std::fflush(stdout) != 0)
        throw GalleryError("cannot write to standard output: " + std::generic_category().message(errno));
}

/// A line for each page, with its name and its title.
std::string listOfPages()
{
    constexpr std::size_t kTitleColumn = 12;
    std::string lines;
    for (const GalleryPage* page : GalleryPage::all()) {
        std::string line = page->name;
        line.resize(std::max(kTitleColumn, line.size() + 1), ' ');
        lines += line + page->title + "\n";
    }
    return lines;
}

void runProgram(int argc, char** argv)
{
    const auto options = GalleryOptions::parse(argc, argv);
    if (options.help) {
        print(GalleryOptions::usage());
        return;
    }
    if (options.lists) {
        print(listOfPages());
        return;
    }
    std::string names;
    for (const auto& path : runGallery(options))
        names += path.string() + "\n";
    print(names);
}

/// Prints why the program fails and returns its exit code. Allocates nothing: memory may have run out.
int fail(const char* reason)
{
    std::fprintf(stderr, "gallery: %s\n", reason);
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        runProgram(argc, argv);
        return 0;
    } catch (const NSException& exception) {
        return fail(exception.reason().UTF8String().c_str());
    } catch (const std::bad_alloc&) {
        return fail("there is not enough memory");
    } catch (const std::exception& error) {
        return fail(error.what());
    }
}
