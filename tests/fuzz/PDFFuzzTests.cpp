#include "PDFFuzz.h"
#include "support/IconPDFs.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string_view>

namespace {

/// What contents and dictionaries consist of.
constexpr auto words =
    std::to_array<std::string_view>({" q ", " Q ", " cm ", " re ", " f* ", " S ", " W n ", " Do ", " sh ",
        " gs ", " scn ", " BT ", " Tj ", " [", "]", "<<", ">>", "(", " 5 0 R ", " 4 0 R ", " 3 0 R ", " 1e9 ",
        " -1 ", " 0 ", "/F ", "/Pattern ", "/SMask ", "/Filter /FlateDecode ", "endstream", "endobj"});

/// The file with a few bytes replaced, words put in, and pieces cut out.
std::string damaged(std::string file, std::mt19937& random)
{
    for (auto changes = 1 + random() % 8; changes > 0; --changes) {
        const auto at = random() % file.size();
        switch (random() % 4) {
        case 0:
            file[at] = static_cast<char>(random());
            break;
        case 1:
            file.insert(at, words[random() % words.size()]);
            break;
        case 2:
            file.erase(at, 1 + random() % 20);
            break;
        default:
            file.insert(at, file.substr(random() % file.size(), random() % 60));
        }
        if (file.empty())
            file.push_back(' ');
    }
    return file;
}

} // namespace

// A short run with fixed seeds; `./korvid fuzz` runs for as long as it is given.
TEST(PDFFuzz, DamagedIconsAreDrawnOrRefused)
{
    std::mt19937 random(7);
    const auto icons = iconPDFs();
    for (int run = 0; run < 2000; ++run) {
        const auto file = damaged(icons[random() % icons.size()].file, random);
        fuzzPDF(reinterpret_cast<const std::uint8_t*>(file.data()), file.size());
    }
    SUCCEED();
}
