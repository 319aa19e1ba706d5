#include "CoreGraphics/pdf/ContentInterpreter.h"
#include "CoreGraphics/pdf/PDFFile.h"

void ContentInterpreter::drawObject()
{
    if (isHidden() || !operand().isName())
        return;
    const PDFObject object = resource("XObject", operand().text);
    if (!object.isStream() || !_recording.file().isVisible(object["OC"]))
        return;
    if (object["Subtype"].isName("Form"))
        drawForm(object);
    else if (object["Subtype"].isName("Image"))
        drawImage(object);
}

void ContentInterpreter::drawForm(const PDFObject& form)
{
    const PDFRecording::StreamUse use(_recording, form);
    if (!use) {
        _recording.notDrawn("a form that contains itself is not drawn");
        return;
    }
    pushState();
    if (const auto matrix = form["Matrix"].matrix())
        _state.pageFromUser = CGAffineTransformConcat(*matrix, _state.pageFromUser);
    if (const auto box = form["BBox"].rect())
        clipToPath(adopt(CGPathCreateWithRect(*box, &_state.pageFromUser)), false);
    const PDFObject own = form["Resources"];
    run(_recording.decode(form), own.isDictionary() ? own : resources(), _stream->ignoresColors);
    popState();
}

void ContentInterpreter::setSoftMask(const PDFObject& mask)
{
    _state.softMask = nullptr;
    if (mask.isDictionary())
        _recording.notDrawn("a soft mask is not drawn");
}
