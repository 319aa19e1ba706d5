#include "BuildRecords.h"
#include "Documents.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <set>

namespace {

/// What users see who include headers in another language, or with other settings, than the library's own.
class CompilerMode : public testing::Test {
protected:
    /// Compiles with warnings as errors and the include folders that users have.
    static ProcessResult run(const std::string& compiler, std::vector<std::string> options)
    {
        options.insert(options.begin(), {compiler, "-Wall", "-Wextra", "-Wpedantic", "-Werror"});
        options.push_back("-I" KORVID_SOURCE_FOLDER "/include");
        for (const std::string framework : {"Foundation", "CoreGraphics", "CoreText", "QuartzCore", "AppKit"})
            options.push_back("-I" KORVID_SOURCE_FOLDER "/platform/" + framework + "/include");
        return runProcess(options);
    }

    /// Compiles `text` as the file `name` without linking.
    ProcessResult compile(const std::string& compiler, std::vector<std::string> options,
        const std::string& name, const std::string& text)
    {
        options.insert(options.end(), {"-fsyntax-only", folder.write(name, text)});
        return run(compiler, options);
    }

    /// What a program that was compiled from C, linked with the libraries and run prints.
    std::string outputOfC(const std::string& standard, const std::string& text)
    {
        const std::string program = folder.file("program");
        const std::string library = KORVID_BUILD_FOLDER "/lib";
        const auto built = run(KORVID_C_COMPILER,
            {standard, folder.write("program.c", text), "-o", program, "-L" + library,
                "-Wl,-rpath," + library, "-lKorvidAppKit", "-lKorvidPlatform", "-lm"});
        EXPECT_EQ(built.exitCode, 0) << built.error;
        const auto result = runProcess({program});
        EXPECT_EQ(result.exitCode, 0);
        return result.output;
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

/// The headers that the page on stability lists for C, those of Core Graphics one by one.
std::set<std::string> headersForC()
{
    const std::string page = readProjectFile("docs/stability.md");
    const auto begin = page.find("\n## C\n");
    const auto listed = matches(page.substr(begin, page.find("\n## ", begin + 1) - begin), "`<([^>]+)>`");
    std::set<std::string> headers(listed.begin(), listed.end());
    for (const auto& header : publicHeaders()) {
        if (const auto name = includedName(header); name.starts_with("CoreGraphics/"))
            headers.insert(name);
    }
    return headers;
}

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

TEST_F(CompilerMode, CTakesTheHeadersThatThePageOnStabilityListsAndGetsOneClearErrorFromTheOthers)
{
    std::set<std::string> taken;
    const auto headers = publicHeaders();
    ASSERT_GT(headers.size(), 100u);
    for (const auto& header : headers) {
        const std::string name = includedName(header);
        SCOPED_TRACE(name);
        const auto result = compile(KORVID_C_COMPILER, {"-std=c11"}, "user.c",
            "#include <" + name + ">\nint main(void) { return 0; }\n");
        if (result.exitCode == 0)
            taken.insert(name);
        else
            expectOneClearError(result, "This header is for C++20");
    }
    EXPECT_EQ(taken, headersForC());
}

TEST_F(CompilerMode, CCompilersTakeEachOfTheirHeadersAloneWithoutAWarning)
{
    std::vector<std::string> options{"-fsyntax-only", "-Wconversion", "-Wshadow", "-Wstrict-prototypes"};
    for (const auto& name : headersForC())
        options.push_back(
            folder.write(name + ".c", "#include <" + name + ">\nint main(void) { return 0; }\n"));
    ASSERT_GT(options.size(), 20u);
    options.insert(options.begin(), "");
    for (const std::string compiler : {KORVID_C_COMPILER, KORVID_OTHER_C_COMPILER}) {
        if (compiler.empty())
            continue; // there is no other one
        for (const std::string standard : {"-std=c99", "-std=c11"}) {
            SCOPED_TRACE(compiler + " " + standard);
            options[0] = standard;
            EXPECT_EQ(run(compiler, options).error, "");
        }
    }
}

TEST_F(CompilerMode, CAndCPlusPlusRepresentValuesAlike)
{
    const std::string text = R"(
        #include <CoreGraphics/CoreGraphics.h>
        #include <KorvidAppKit/ZRBezierSeries.h>
        #include <KorvidAppKit/ZRPath.h>
        #include <KorvidAppKit/ZRShapes.h>
        #include <assert.h>

        #define IS_INTEGER_OF_32_BITS(type) static_assert(sizeof(type) == 4, #type)
        IS_INTEGER_OF_32_BITS(CGBitmapInfo);
        IS_INTEGER_OF_32_BITS(CGBlendMode);
        IS_INTEGER_OF_32_BITS(CGColorRenderingIntent);
        IS_INTEGER_OF_32_BITS(CGColorSpaceModel);
        IS_INTEGER_OF_32_BITS(CGGradientDrawingOptions);
        IS_INTEGER_OF_32_BITS(CGImageAlphaInfo);
        IS_INTEGER_OF_32_BITS(CGInterpolationQuality);
        IS_INTEGER_OF_32_BITS(CGLineCap);
        IS_INTEGER_OF_32_BITS(CGLineJoin);
        IS_INTEGER_OF_32_BITS(CGPDFBox);
        IS_INTEGER_OF_32_BITS(CGPathDrawingMode);
        IS_INTEGER_OF_32_BITS(CGPathElementType);
        IS_INTEGER_OF_32_BITS(CGRectEdge);
        IS_INTEGER_OF_32_BITS(ZRCorner);
        static_assert(kCGColorSpaceModelUnknown < 0, "");

        static_assert(sizeof(CGFloat) == 8 && sizeof(CGPoint) == 16 && sizeof(CGSize) == 16, "");
        static_assert(sizeof(CGRect) == 32 && sizeof(CGAffineTransform) == 48, "");
        static_assert(offsetof(CGPathElement, points) == 8 && sizeof(CGPathElement) == 16, "");
        static_assert(offsetof(ZRPathLineStrip, points) == 8 && sizeof(ZRPathLineStrip) == 24, "");
        static_assert(sizeof(ZRBezier) == 48 && sizeof(ZRBezierHalves) == 112, "");
    )";
    EXPECT_EQ(compile(KORVID_C_COMPILER, {"-std=c11"}, "values.c", text).error, "");
    EXPECT_EQ(compile(KORVID_COMPILER, {"-std=c++20"}, "values.cpp", text).error, "");
}

TEST_F(CompilerMode, CProgramsDrawIntoBitmaps)
{
    // The upper rectangle covers half of the pixels in the second column.
    EXPECT_EQ(outputOfC("-std=c99", codeBlock(readProjectFile("docs/graphics.md"), "c")),
        "FF8000FF 80400080 00000000 00000000 \n"
        "FF8000FF 80400080 00000000 00000000 \n"
        "FF8000FF FF8000FF FF8000FF 00000000 \n");
}

TEST_F(CompilerMode, CComputesGeometryInItsHeaders)
{
    EXPECT_EQ(outputOfC("-std=c99", R"(
        #include <CoreGraphics/CoreGraphics.h>
        #include <stdio.h>

        static void print(CGRect rect)
        {
            printf("%g %g %g %g\n", rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
        }

        int main(void)
        {
            const CGRect flipped = CGRectMake(5.5, 2, -3, 4.25);
            print(CGRectStandardize(flipped));
            print(CGRectInset(flipped, 1, 2));
            print(CGRectInset(flipped, 2, 0));
            print(CGRectOffset(flipped, 10, 20));
            print(CGRectIntegral(flipped));
            print(CGRectApplyAffineTransform(flipped, CGAffineTransformMakeScale(2, -1)));
            const CGAffineTransform turned = CGAffineTransformTranslate(CGAffineTransformMakeRotation(0.5), 3, 1);
            const CGPoint point = CGPointApplyAffineTransform(CGPointMake(-3, -1), turned);
            printf("%d %d\n", CGPointEqualToPoint(point, CGPointZero), CGAffineTransformIsIdentity(turned));
            printf("%d %d\n", CGRectIsNull(CGRectNull), CGRectContainsRect(CGRectInfinite, flipped));
            return 0;
        })"),
        "2.5 2 3 4.25\n"
        "3.5 4 1 0.25\n"
        "inf inf 0 0\n"
        "12.5 22 3 4.25\n"
        "2 2 4 5\n"
        "5 -6.25 6 4.25\n"
        "1 0\n"
        "1 1\n");
}

TEST_F(CompilerMode, CProgramsCallTheServicesOfTheLibrary)
{
    EXPECT_EQ(outputOfC("-std=c11", R"(
        #include <Foundation/CFDate.h>
        #include <KorvidAppKit/ZRAngularGradient.h>
        #include <KorvidAppKit/ZRBezierSeries.h>
        #include <KorvidAppKit/ZRNoise.h>
        #include <KorvidAppKit/ZRPath.h>
        #include <KorvidAppKit/ZRShapes.h>
        #include <stdio.h>

        int main(void)
        {
            float samples[2];
            ZRFillPerlinNoise(samples, 2, 1, 2, 3.0f, 5.0f, 1.0f, 0.25f, 2);
            printf("%d\n", samples[1] > 0 && samples[1] == perlin2d(4.0f, 5.0f, 0.25f, 2));

            const ZRBezier arch = {{0, 40}, {80, 40}, {80, 0}};
            const ZRBezierHalves halves = ZRBezierSubdivide(CGPointZero, arch);
            printf("%g %g\n", halves.split.x, halves.split.y);

            const CGPoint bent[] = {{0, 0}, {5, 1}, {10, 0}};
            CGPoint straight[3];
            printf("%zu\n", douglas_peucker(bent, 3, straight, 3, 2));

            CGPathRef tab = ZRCreateRoundedRectPath(kZRCornerMinXMaxY | kZRCornerMaxXMaxY, CGRectMake(1, 2, 30, 20), 6);
            printf("%g\n", CGRectGetMaxX(CGPathGetPathBoundingBox(tab)));
            CGPathRelease(tab);

            CGImageRef sweep = ZRCreateAngularGradientImage(true, 8, 6, 0);
            printf("%zu %d\n", CGImageGetHeight(sweep), CGImageGetAlphaInfo(sweep) == kCGImageAlphaOnly);
            CGImageRelease(sweep);
            return CFAbsoluteTimeGetCurrent() > 0 ? 0 : 1;
        })"),
        "1\n"
        "40 30\n"
        "2\n"
        "31\n"
        "6 1\n");
}
