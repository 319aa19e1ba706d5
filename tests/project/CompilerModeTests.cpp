#include "BuildRecords.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

/// What users see who include headers in another language, or with other settings, than the library's own.
class CompilerMode : public testing::Test {
protected:
    /// Compiles without linking, with the include folders that users have.
    ProcessResult compile(const std::string& compiler, std::vector<std::string> options,
        const std::string& name, const std::string& text)
    {
        options.insert(options.begin(), compiler);
        options.insert(options.end(), {"-Wall", "-Wextra", "-Wpedantic", "-Werror", "-fsyntax-only"});
        options.push_back(std::string("-I") + KORVID_SOURCE_FOLDER "/include");
        for (const char* framework : {"Foundation", "CoreGraphics", "CoreText", "QuartzCore", "AppKit"})
            options.push_back(std::string("-I") + KORVID_SOURCE_FOLDER "/platform/" + framework + "/include");
        options.push_back(folder.write(name, text));
        return runProcess(options);
    }

    /// The lines of the compiler's messages that report an error.
    static std::vector<std::string> errors(const ProcessResult& result)
    {
        std::vector<std::string> found;
        for (std::size_t begin = 0; begin < result.error.size();) {
            const std::size_t end = std::min(result.error.find('\n', begin), result.error.size());
            const std::string line = result.error.substr(begin, end - begin);
            if (line.find("error: ") != std::string::npos)
                found.push_back(line);
            begin = end + 1;
        }
        return found;
    }

    /// One error that says what is wrong, and one that ends the compilation.
    static void expectOneClearError(const ProcessResult& result, const std::string& text)
    {
        EXPECT_NE(result.exitCode, 0);
        const auto found = errors(result);
        ASSERT_EQ(found.size(), 2u) << result.error;
        EXPECT_NE(found[0].find("#error \"" + text), std::string::npos) << found[0];
        EXPECT_NE(found[1].find("fatal error: the error above"), std::string::npos) << found[1];
    }

    static constexpr const char* kEverything =
        "#include <KorvidAppKit/KorvidAppKit.h>\n#include <AppKit/AppKit.h>\n";

    TemporaryFolder folder;
};

} // namespace

TEST_F(CompilerMode, NewerStandardsCompileWithoutAWarning)
{
    const auto result = compile(KORVID_COMPILER, {"-std=c++23"}, "user.cpp", kEverything);
    EXPECT_EQ(result.exitCode, 0) << result.error;
}

TEST_F(CompilerMode, OlderStandardsGetOneClearError)
{
    for (const char* standard : {"-std=c++14", "-std=c++17"})
        expectOneClearError(
            compile(KORVID_COMPILER, {standard}, "user.cpp", kEverything), "KorvidAppKit needs C++20");
}

TEST_F(CompilerMode, ProgramsWithoutExceptionsOrRTTIGetOneClearError)
{
    for (const char* option : {"-fno-exceptions", "-fno-rtti"})
        expectOneClearError(compile(KORVID_COMPILER, {"-std=c++20", option}, "user.cpp", kEverything),
            "KorvidAppKit needs C++20 with exceptions and RTTI");
}

TEST_F(CompilerMode, CTakesTheHeadersThatSaySoAndGetsOneClearErrorFromTheOthers)
{
    std::vector<std::string> taken;
    const auto headers = publicHeaders();
    ASSERT_GT(headers.size(), 100u);
    for (const auto& header : headers) {
        const std::string name = includedName(header);
        SCOPED_TRACE(name);
        const auto result = compile(KORVID_C_COMPILER, {"-std=c11"}, "user.c",
            "#include <" + name + ">\nint main(void) { return 0; }\n");
        if (result.exitCode == 0)
            taken.push_back(name);
        else
            expectOneClearError(result, "This header is for C++20");
    }
    EXPECT_EQ(taken,
        (std::vector<std::string>{
            "KorvidAppKit/ZRNoise.h", "Foundation/CFDate.h", "Foundation/KorvidBase.h"}));
}

TEST_F(CompilerMode, CProgramsCallWhatTheyInclude)
{
    const std::string program = folder.file("noise");
    const std::string source = folder.write("noise.c", R"(
        #include <Foundation/CFDate.h>
        #include <KorvidAppKit/ZRNoise.h>

        int main(void)
        {
            float samples[2];
            ZRFillPerlinNoise(samples, 2, 1, 2, 3.0f, 5.0f, 1.0f, 0.25f, 2);
            int isSame = samples[1] == perlin2d(4.0f, 5.0f, 0.25f, 2);
            return isSame && samples[1] > 0 && CFAbsoluteTimeGetCurrent() > 0 ? 42 : 1;
        })");
    const std::string library = KORVID_BUILD_FOLDER "/lib";
    const auto built = runProcess({KORVID_C_COMPILER, "-std=c11", "-Wall", "-Wextra", "-Wpedantic", "-Werror",
        "-I" KORVID_SOURCE_FOLDER "/include", "-I" KORVID_SOURCE_FOLDER "/platform/Foundation/include",
        source, "-o", program, "-L" + library, "-Wl,-rpath," + library, "-lKorvidAppKit",
        "-lKorvidPlatform"});
    ASSERT_EQ(built.exitCode, 0) << built.error;
    EXPECT_EQ(runProcess({program}).exitCode, 42);
}
