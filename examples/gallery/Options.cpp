#include "Options.h"

#include "Files.h"
#include "GalleryError.h"
#include "OptionsText.h"
#include "Page.h"
#include "SVGPath.h"

#include <AppKit/NSAppearance.h>
#include <KorvidAppKit/ZRQRCodeGenerator.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <string_view>

namespace {

NSString readText(const std::string& utf8, const std::string& option)
{
    NSString text(utf8);
    // The conversion has replaced malformed sequences.
    if (text.UTF8String() != utf8)
        throw GalleryError("the text for " + option + " is not UTF-8");
    return text;
}

/// The path in a file of SVG path data.
RetainPtr<CGPath> readPath(const std::string& file)
{
    const std::string data = readFile(file, "a path");
    try {
        return makePathFromSVG(data);
    } catch (const SVGPathError& error) {
        throw GalleryError(quoted(file) + " line " + std::to_string(error.line) + ", column "
            + std::to_string(error.column) + ": " + error.what());
    }
}

/// The name of a page, or of the one picture that shows all of them.
std::string readPage(const std::string& name)
{
    std::string known;
    for (const GalleryPage* page : GalleryPage::all()) {
        if (name == page->name)
            return name;
        known += std::string(page->name) + ", ";
    }
    if (name == kWholeGallery)
        return name;
    throw GalleryError("there is no page " + quoted(name) + ", only " + known + "and " + kWholeGallery);
}

NSString readAppearance(const std::string& name)
{
    if (name == "dark")
        return NSAppearanceNameDarkAqua;
    if (name == "light")
        return NSAppearanceNameAqua;
    throw GalleryError("--appearance is dark or light, not " + quoted(name));
}

/// A scale of pictures.
CGFloat readScale(const std::string& text)
{
    constexpr CGFloat kLeast = 0.5, kMost = 4;
    CGFloat scale = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, scale, std::chars_format::fixed);
    if (error != std::errc() || stop != end || !(scale >= kLeast && scale <= kMost))
        throw GalleryError("--scale is a number from 0.5 to 4, not " + quoted(text));
    return scale;
}

void addScale(std::vector<CGFloat>& scales, CGFloat scale)
{
    if (std::find(scales.begin(), scales.end(), scale) == scales.end())
        scales.push_back(scale);
}

std::string readFolder(const std::string& name)
{
    if (name.empty())
        throw GalleryError("--snapshot needs the name of a folder");
    return name;
}

/// The options without a value, and what each sets.
const std::map<std::string, bool GalleryOptions::*> kFlags{
    {"--help", &GalleryOptions::help},
    {"-h", &GalleryOptions::help},
    {"--list", &GalleryOptions::lists},
    {"--still", &GalleryOptions::isStill},
};

using Setter = void (*)(GalleryOptions& options, const std::string& value);

/// The options with a value, and how it is set.
const std::map<std::string, Setter> kValueOptions{
    {"--qr", [](auto& options, auto& value) { options.qrText = readText(value, "--qr"); }},
    {"--text", [](auto& options, auto& value) { options.text = readText(value, "--text"); }},
    {"--svg", [](auto& options, auto& value) { options.path = readPath(value); }},
    {"--image", [](auto& options, auto& value) { options.image = readPicture(value); }},
    {"--pdf", [](auto& options, auto& value) { options.pdfs.push_back(readPDF(value)); }},
    {"--page", [](auto& options, auto& value) { options.pages.push_back(readPage(value)); }},
    {"--scale", [](auto& options, auto& value) { addScale(options.scales, readScale(value)); }},
    {"--snapshot", [](auto& options, auto& value) { options.snapshotFolder = readFolder(value); }},
    {"--appearance", [](auto& options, auto& value) { options.appearanceName = readAppearance(value); }},
};

/// Sets what one option stands for. `next` returns the following word of the command line, null at its end.
template <std::invocable Next> void parseOption(GalleryOptions& options, const std::string& word, Next next)
{
    const auto equals = word.find('=');
    const std::string name = word.substr(0, equals);
    if (const auto flag = kFlags.find(name); flag != kFlags.end()) {
        if (equals != std::string::npos)
            throw GalleryError(name + " takes no value (see --help)");
        options.*flag->second = true;
        return;
    }
    const auto option = kValueOptions.find(name);
    if (option == kValueOptions.end())
        throw GalleryError("there is no option " + quoted(word) + " (see --help)");
    if (equals != std::string::npos) {
        option->second(options, word.substr(equals + 1));
        return;
    }
    const char* const value = next();
    if (!value)
        throw GalleryError(name + " needs a value (see --help)");
    option->second(options, value);
}

/// Whether words that follow the option's value are more values: "--pdf icons/*.pdf".
bool takesMoreValues(std::string_view option)
{
    return option == "--pdf";
}

} // namespace

std::string GalleryOptions::usage()
{
    return std::string("Usage: gallery [OPTION]...\n\n") + kGalleryOptionsText;
}

bool GalleryOptions::wants(const char* page) const
{
    return pages.empty() || std::find(pages.begin(), pages.end(), page) != pages.end();
}

GalleryOptions GalleryOptions::parse(int argc, char** argv)
{
    GalleryOptions options;
    options.scales.clear();
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const auto next = [&] { return i + 1 < argc ? argv[++i] : nullptr; };
        parseOption(options, word, next);
        while (takesMoreValues(word) && i + 1 < argc && argv[i + 1][0] != '-')
            kValueOptions.at(word)(options, next());
    }
    if (!options.scales.empty() && !options.snapshotFolder)
        throw GalleryError("--scale is for pictures: it needs --snapshot (see --help)");
    if (options.scales.empty())
        options.scales = GalleryOptions().scales;
    if (!ZRQRCodeGenerator::textFits(options.qrText))
        throw GalleryError("the text is too long for a QR code ("
            + std::to_string(options.qrText.UTF8String().size())
            + " bytes; at most 2331, digits and capitals more)");
    return options;
}
