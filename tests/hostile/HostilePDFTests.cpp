#include "HostilePDFs.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

namespace {

class HostilePDFTest : public testing::TestWithParam<HostilePDF> { };

std::string testName(const testing::TestParamInfo<HostilePDF>& info)
{
    std::string result;
    bool startsWord = true;
    for (const char c : info.param.name) {
        const bool isPart = std::isalnum(static_cast<unsigned char>(c)) != 0;
        if (isPart)
            result += startsWord ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
        startsWord = !isPart;
    }
    return result;
}

// The limits of drawing are counted in work, not in seconds: the slowest file takes 0.65 seconds on a busy
// machine of two cores. The bound leaves room for slower ones, and finds what escapes the limits.
#ifdef __SANITIZE_ADDRESS__
constexpr long mostMilliseconds = 60'000;
constexpr long mostKilobytes = 4'000'000; // shadow memory and quarantine
#else
constexpr long mostMilliseconds = 2'500;
constexpr long mostKilobytes = 150'000;
#endif

TEST_P(HostilePDFTest, IsDrawnOrRefusedWithinBounds)
{
    const TemporaryFolder folder;
    const auto path = folder.write("hostile.pdf", GetParam().make());

    const auto result = runProcess({KORVID_DRAW_PDF, path});

    ASSERT_EQ(result.exitCode, 0) << result.error;
    long milliseconds = -1;
    long kilobytes = -1;
    std::istringstream(result.output) >> milliseconds >> kilobytes;
    ASSERT_GE(milliseconds, 0) << result.output;
    EXPECT_LE(milliseconds, mostMilliseconds);
    EXPECT_LE(kilobytes, mostKilobytes);
}

INSTANTIATE_TEST_SUITE_P(, HostilePDFTest, testing::ValuesIn(hostilePDFs()), testName);

TEST(HostilePDFsTest, HaveNamesOfTheirOwn)
{
    std::set<std::string> names;
    for (const auto& file : hostilePDFs())
        EXPECT_TRUE(names.insert(file.name).second) << file.name;
    EXPECT_GE(names.size(), 60U);
}

} // namespace
