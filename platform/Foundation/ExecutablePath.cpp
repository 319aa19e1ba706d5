#include "Foundation/ExecutablePath.h"

#include <bit>
#include <string>
#include <string_view>
#include <sys/auxv.h>

std::filesystem::path executablePath(const std::filesystem::path& kernelLink)
{
    std::error_code error;
    std::string path = std::filesystem::read_symlink(kernelLink, error).string();
    if (error) {
        const auto* const started = std::bit_cast<const char*>(getauxval(AT_EXECFN));
        return started ? std::filesystem::absolute(started, error).lexically_normal()
                       : std::filesystem::path();
    }
    // The kernel appends this when the file was replaced since the program started.
    constexpr std::string_view gone = " (deleted)";
    if (path.ends_with(gone))
        path.resize(path.size() - gone.size());
    return path;
}
