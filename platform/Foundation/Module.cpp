#include "Foundation/Module.h"

#include <Foundation/NSException.h>

#include <dlfcn.h>
#include <filesystem>
#include <string>

namespace {

/// The folder of the file that this code was loaded from. Found by itself rather than by the loader's search,
/// which the sanitizers replace.
std::filesystem::path ownFolder()
{
    Dl_info own{};
    dladdr(reinterpret_cast<const void*>(&moduleFunction), &own);
    std::error_code error;
    const auto file = std::filesystem::canonical(own.dli_fname, error);
    return error ? std::filesystem::path() : file.parent_path();
}

} // namespace

void* moduleFunction(const char* module, const char* function)
{
    // The version is a part of the name: modules share internal types with this library.
    const auto file = ownFolder() / ("lib" + std::string(module) + "-" KORVID_VERSION ".so");
    void* const library = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
    void* const address = library ? dlsym(library, function) : nullptr;
    if (!address) {
        const char* const reason = dlerror();
        NSException::raise(NSInternalInconsistencyException,
            NSString("A part of KorvidPlatform cannot be loaded: " + (reason ? reason : file.string())));
    }
    return address;
}
