#include "Options.h"

#include "Files.h"
#include "GalleryError.h"
#include "OptionsText.h"
#include "Page.h"
#include "SVGPath.h"

#include <AppKit/NSAppearance.h>
#include <KorvidAppKit/ZRQRCodeGenerator.h>

#include <algorithm>
#include <string_view>

namespace {

NSString readText(const char* utf8, const std::string& option)
{
    NSString text = utf8;
    // Each malformed sequence has become a character of its own.
    if (text.UTF8String() != utf8)
        throw GalleryError("the text for " + option + " is not UTF-8");
    return text;
}

/// The path in a file of SVG path data.
RetainPtr<CGPath> readPath(const char* file)
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
std::string readPage(const char* name)
{
    std::string known;
    for (const GalleryPage* page : GalleryPage::all()) {
        if (std::string_view(name) == page->name)
            return name;
        known += std::string(page->name) + ", ";
    }
    if (std::string_view(name) == kWholeGallery)
        return name;
    throw GalleryError("there is no page " + quoted(name) + ", but " + known + "and " + kWholeGallery);
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
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--help" || word == "-h") {
            options.help = true;
            continue;
        }
        if (word == "--still") {
            options.isStill = true;
            continue;
        }
        if (word != "--qr" && word != "--text" && word != "--svg" && word != "--image" && word != "--page"
            && word != "--snapshot" && word != "--appearance")
            throw GalleryError("there is no option " + quoted(word) + " (see --help)");
        if (i + 1 == argc)
            throw GalleryError(word + " needs a value (see --help)");
        const char* value = argv[++i];
        if (word == "--qr") {
            options.qrText = readText(value, word);
        } else if (word == "--text") {
            options.text = readText(value, word);
        } else if (word == "--svg") {
            options.path = readPath(value);
        } else if (word == "--image") {
            options.image = readPicture(value);
        } else if (word == "--page") {
            options.pages.push_back(readPage(value));
        } else if (word == "--snapshot") {
            if (!*value)
                throw GalleryError("--snapshot needs the name of a folder");
            options.snapshotFolder = value;
        } else if (std::string_view(value) == "dark") {
            options.appearanceName = NSAppearanceNameDarkAqua;
        } else if (std::string_view(value) == "light") {
            options.appearanceName = NSAppearanceNameAqua;
        } else {
            throw GalleryError("--appearance is dark or light, not " + quoted(value));
        }
    }
    if (!ZRQRCodeGenerator::textFits(options.qrText))
        throw GalleryError("the text is too long for a QR code ("
            + std::to_string(options.qrText.UTF8String().size())
            + " bytes; at most 2331, digits and capitals more)");
    return options;
}
