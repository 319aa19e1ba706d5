#include "CoreGraphics/pdf/ContentInterpreter.h"

void ContentInterpreter::setFillSpace()
{
    setSpace(_state.fill);
}

void ContentInterpreter::setStrokeSpace()
{
    setSpace(_state.stroke);
}

void ContentInterpreter::setFillColor()
{
    setColor(_state.fill);
}

void ContentInterpreter::setStrokeColor()
{
    setColor(_state.stroke);
}

void ContentInterpreter::setFillGray()
{
    setDeviceColor(_state.fill, PDFColorSpace::deviceGray());
}

void ContentInterpreter::setStrokeGray()
{
    setDeviceColor(_state.stroke, PDFColorSpace::deviceGray());
}

void ContentInterpreter::setFillRGB()
{
    setDeviceColor(_state.fill, PDFColorSpace::deviceRGB());
}

void ContentInterpreter::setStrokeRGB()
{
    setDeviceColor(_state.stroke, PDFColorSpace::deviceRGB());
}

void ContentInterpreter::setFillCMYK()
{
    setDeviceColor(_state.fill, PDFColorSpace::deviceCMYK());
}

void ContentInterpreter::setStrokeCMYK()
{
    setDeviceColor(_state.stroke, PDFColorSpace::deviceCMYK());
}

void ContentInterpreter::setSpace(PDFPaint& paint)
{
    if (_stream->ignoresColors || !operand().isName())
        return;
    auto space = PDFColorSpace::make(objectOf(operand()), resources(), _recording);
    if (!space) {
        _recording.notDrawn("a colour space is invalid; gray is used");
        space = PDFColorSpace::deviceGray();
    }
    _recording.budget().spendWork(space->work());
    paint.space = std::move(space);
    paint.color = paint.space->color(paint.space->initialComponents());
    paint.pattern = {};
}

void ContentInterpreter::setColor(PDFPaint& paint)
{
    if (_stream->ignoresColors || _operandCount == 0)
        return;
    const auto components = numericOperands();
    if (!paint.space->isPattern()) {
        _recording.budget().spendWork(paint.space->work());
        if (components.size() >= paint.space->components())
            paint.color = paint.space->color(components);
        return;
    }
    if (!operand().isName())
        return;
    paint.pattern = resource("Pattern", operand().text);
    const PDFColorSpace* const underlying = paint.space->underlying();
    if (underlying && components.size() >= underlying->components()) {
        _recording.budget().spendWork(underlying->work());
        paint.color = underlying->color(components);
    }
}

void ContentInterpreter::setDeviceColor(PDFPaint& paint, const std::shared_ptr<const PDFColorSpace>& space)
{
    if (_stream->ignoresColors)
        return;
    paint.space = space;
    paint.color = space->color(std::span(_numbers).first(space->components()));
    paint.pattern = {};
}
