#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

TemporaryFolder::TemporaryFolder()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "korvid-test-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("cannot create a temporary folder from " + pattern);
    _path = pattern;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view content) const
{
    const auto path = _path / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
    return path.string();
}
