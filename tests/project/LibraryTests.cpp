#include "BuildRecords.h"
#include "support/Process.h"

#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>

namespace {

std::string libraryPath(const std::string& name)
{
    return KORVID_BUILD_FOLDER "/lib/lib" + name + ".so";
}

struct Symbol {
    char kind; ///< as nm writes it: lower case for local, V, W or u for those that may be there repeatedly
    std::string name;
};

std::vector<Symbol> exportedSymbols(const std::string& library)
{
    const auto result = runProcess({KORVID_NM, "-D", "-C", "--defined-only", libraryPath(library)});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    std::vector<Symbol> symbols;
    static const std::regex line("^[0-9a-f]+ (\\S) (.+)$");
    std::istringstream lines(result.output);
    for (std::string text; std::getline(lines, text);) {
        if (std::smatch parts; std::regex_match(text, parts, line))
            symbols.push_back({parts.str(1)[0], parts.str(2)});
    }
    return symbols;
}

/// The class, namespace or function that a symbol belongs to: the first name in it.
std::string ownerOf(const std::string& symbol)
{
    static const std::regex prefix("^(vtable|VTT|typeinfo|typeinfo name|guard variable|construction "
                                   "vtable|(non-)?virtual thunk) (for|to) ");
    static const std::regex name("^[A-Za-z_][A-Za-z_0-9]*");
    const std::string rest = std::regex_replace(symbol, prefix, "");
    std::smatch found;
    return std::regex_search(rest, found, name) ? found.str() : rest;
}

/// All words of the headers that applications and tests may include.
std::set<std::string> wordsOfHeaders()
{
    // Internal functions and classes that have tests of their own.
    std::set<std::string> words{"CGImageCreateWithCopiedPixels", "setApplicationAppearance", "vectorUnits",
        "InstalledFace", "DirtyRegion", "makeColorOfAsset"};
    // The linker's own marks.
    words.insert({"__bss_start", "_edata", "_end"});
    auto headers = filesBelow("include", ".h");
    for (const auto& header : filesBelow("platform", ".h")) {
        if (header.find("/include/") != std::string::npos || header.find("/testing/") != std::string::npos)
            headers.push_back(header);
    }
    static const std::regex word("[A-Za-z_][A-Za-z_0-9]*");
    for (const auto& header : headers) {
        const std::string text = readProjectFile(header);
        for (std::sregex_iterator found(text.begin(), text.end(), word), end; found != end; ++found)
            words.insert(found->str());
    }
    return words;
}

class SharedLibrary : public testing::TestWithParam<const char*> { };

} // namespace

TEST_P(SharedLibrary, ExportsOnlyWhatItsHeadersDeclare)
{
    const auto words = wordsOfHeaders();
    const auto symbols = exportedSymbols(GetParam());
    ASSERT_FALSE(symbols.empty());
    for (const auto& [kind, name] : symbols) {
        // The C++ library's templates, made for our types, are marked visible by its own headers, and so is
        // the class of qpdf that one of ours derives from.
        const bool repeatable = kind == 'V' || kind == 'W' || kind == 'u';
        if (repeatable && (name.find("std::") != std::string::npos || name.ends_with(" for Pipeline")))
            continue;
        EXPECT_TRUE(words.contains(ownerOf(name))) << kind << ' ' << name;
    }
}

TEST_P(SharedLibrary, ExportsNothingOfTheLibrariesBelow)
{
    static const std::regex foreign("\\b(cairo_|pango_|qrcodegen_|qt_|Q[A-Z]\\w+(::|\\())");
    for (const auto& symbol : exportedSymbols(GetParam())) {
        EXPECT_TRUE(
            symbol.name.find("std::") != std::string::npos || !std::regex_search(symbol.name, foreign))
            << symbol.name;
    }
}

TEST_P(SharedLibrary, HasItsVersionInItsName)
{
    const std::string name = std::string("lib") + GetParam() + ".so";
    const auto result = runProcess({KORVID_READELF, "-d", libraryPath(GetParam())});
    EXPECT_NE(result.output.find("Library soname: [" + name + "." KORVID_SOVERSION "]"), std::string::npos)
        << result.output;

    const auto file = runProcess({"readlink", "-f", libraryPath(GetParam())});
    EXPECT_TRUE(file.output.ends_with("/" + name + "." KORVID_VERSION "\n")) << file.output;
}

INSTANTIATE_TEST_SUITE_P(Both, SharedLibrary, testing::Values("KorvidPlatform", "KorvidAppKit"),
    [](const auto& info) { return info.param; });

TEST(Libraries, OnlyThePlatformLayerIsLinkedWithTheLibrariesBelow)
{
    const auto library = runProcess({KORVID_READELF, "-d", libraryPath("KorvidAppKit")}).output;
    const auto platform = runProcess({KORVID_READELF, "-d", libraryPath("KorvidPlatform")}).output;
    for (const char* below : {"[libcairo.so", "[libQt6Core.so", "[libpango-1.0.so"}) {
        EXPECT_EQ(library.find(below), std::string::npos) << below;
        EXPECT_NE(platform.find(below), std::string::npos) << below;
    }
}

TEST(Libraries, LoadNothingThatOnlyWindowsAndPDFFilesNeed)
{
    const auto loaded = runProcess({"ldd", libraryPath("KorvidAppKit")}).output;
    EXPECT_NE(loaded.find("libcairo.so"), std::string::npos) << loaded;
    for (const char* later : {"libQt6Gui.so", "libQt6Widgets.so", "libQt6DBus.so", "libqpdf.so", "libjpeg.so",
             "libgnutls.so", "libhwy.so"})
        EXPECT_EQ(loaded.find(later), std::string::npos) << later;
}

TEST(Modules, ExportOnlyTheFunctionThatOpensThem)
{
    const std::pair<const char*, const char*> modules[] = {
        {"KorvidPlatformQt", "makeQtHost"}, {"KorvidPlatformPDF", "openPDFPages"}};
    for (const auto& [module, function] : modules) {
        bool isFound = false;
        for (const auto& [kind, name] : exportedSymbols(module + std::string("-" KORVID_VERSION))) {
            isFound |= name == function;
            // Weak symbols are those of templates and of the libraries' own classes.
            if (kind == 'T' || kind == 'D' || kind == 'B') {
                EXPECT_TRUE(name == function || wordsOfHeaders().contains(ownerOf(name))) << name;
            }
        }
        EXPECT_TRUE(isFound) << module;
    }
}
