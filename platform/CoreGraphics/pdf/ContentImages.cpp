#include "CoreGraphics/pdf/ContentInterpreter.h"

void ContentInterpreter::drawImage(const PDFObject&)
{
    _recording.notDrawn("an image is not drawn");
}

void ContentInterpreter::paintPattern(PDFShape, const PDFPaint&, float)
{
    _recording.notDrawn("a pattern is not drawn");
}
