#include "CoreGraphics/pdf/PDFPageContent.h"

#include "CoreGraphics/pdf/ContentInterpreter.h"
#include "CoreGraphics/pdf/PDFFile.h"

#include <exception>

namespace {

/// The content streams of a page, which may break anywhere between two tokens, as one.
std::string contentOf(const PDFObject& contents, PDFRecording& recording)
{
    if (contents.isStream())
        return recording.decode(contents);
    std::string result;
    for (std::size_t index = 0; index < contents.size(); ++index) {
        result += recording.decode(contents.at(index));
        result += '\n';
    }
    return result;
}

} // namespace

std::shared_ptr<const DisplayList> recordPage(PDFFile& file, std::size_t index)
{
    const std::lock_guard lock(file.mutex());
    const PDFPageProperties& page = file.pages()[index];
    PDFRecording recording(file, index + 1);
    ContentInterpreter interpreter(recording);
    try {
        interpreter.run(contentOf(page.dictionary["Contents"], recording), page.resources);
    } catch (const PDFLimitExceeded& limit) {
        recording.notDrawn("the rest of the page is left out: too many " + std::string(limit.what));
    } catch (const std::exception&) {
        recording.notDrawn("the rest of the page is left out: the file is damaged");
    }
    return interpreter.takeList();
}
