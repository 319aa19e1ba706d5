#include "HostilePDFs.h"

#include <iterator>
#include <random>

std::vector<HostilePDF> hostilePDFs()
{
    std::vector<HostilePDF> result;
    for (auto family : {hostileStructures, hostileContents, hostileForms, hostileImages, hostileResources}) {
        auto files = family();
        std::move(files.begin(), files.end(), std::back_inserter(result));
    }
    return result;
}

std::string randomBytes(std::size_t count)
{
    std::mt19937 generator(1);
    std::string result(count, '\0');
    for (auto& byte : result)
        byte = static_cast<char>(generator());
    return result;
}
