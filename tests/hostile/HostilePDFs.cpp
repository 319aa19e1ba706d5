#include "HostilePDFs.h"

#include <iterator>

std::vector<HostilePDF> hostilePDFs()
{
    std::vector<HostilePDF> result;
    for (auto family : {hostileStructures, hostileContents, hostileForms, hostileImages, hostileResources}) {
        auto files = family();
        std::move(files.begin(), files.end(), std::back_inserter(result));
    }
    return result;
}

std::string repeated(std::string_view text, std::size_t times)
{
    std::string result;
    result.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        result += text;
    return result;
}
