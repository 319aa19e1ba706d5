#include "CoreGraphics/pdf/PDFFont.h"

#include "CoreGraphics/pdf/PDFFontKinds.h"
#include "CoreGraphics/pdf/PDFRecording.h"

std::shared_ptr<const PDFFont> PDFFont::make(const PDFObject& dictionary, PDFRecording& recording)
{
    return recording.cached<PDFFont>(dictionary, [&]() -> std::shared_ptr<const PDFFont> {
        recording.budget().spendOperators(kPDFLimits.operatorsPerStream);
        if (dictionary["Subtype"].isName("Type0"))
            return makeCompositeFont(dictionary, recording);
        if (dictionary["Subtype"].isName("Type3"))
            return makeProcedureFont(dictionary, recording);
        return makeSimpleFont(dictionary, recording);
    });
}

PDFFont::Code PDFFont::firstCode(std::string_view string) const
{
    return {static_cast<unsigned char>(string.front()), 1};
}

std::string readableFontName(const PDFObject& dictionary)
{
    std::string name = dictionary["BaseFont"].name();
    if (name.size() > 7 && name[6] == '+') // the mark of a font that is only partly contained
        name.erase(0, 7);
    return name.empty() ? "a font without a name" : name;
}

PDFObject fontProgram(const PDFObject& descriptor)
{
    for (const char* key : {"FontFile", "FontFile2", "FontFile3"})
        if (descriptor[key].isStream())
            return descriptor[key];
    return {};
}
