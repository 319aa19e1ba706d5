#include "CoreGraphics/pdf/ContentInterpreter.h"
#include "CoreGraphics/pdf/PDFFile.h"
#include "CoreGraphics/pdf/PDFFunction.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>
#include <span>

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

namespace {

constexpr CGRect kEverything{{-1e9, -1e9}, {2e9, 2e9}};

/// The only item that paints, if it is a path with an alpha at most; otherwise null.
PathItem* onlyPath(DisplayList& list)
{
    PathItem* result = nullptr;
    for (auto& item : list.items) {
        if (std::holds_alternative<SaveItem>(item) || std::holds_alternative<RestoreItem>(item)
            || std::holds_alternative<ClipItem>(item))
            continue;
        if (result || !std::holds_alternative<PathItem>(item))
            return nullptr;
        result = &std::get<PathItem>(item);
    }
    const bool isPlain =
        result && result->compositing.blendMode == kCGBlendModeNormal && !result->compositing.softMask;
    return isPlain ? result : nullptr;
}

/// The coverage that a soft mask's transfer function gives each luminosity or alpha; the identity without
/// one.
std::array<std::uint8_t, 256> transferTable(const PDFObject& object, PDFRecording& recording)
{
    std::array<std::uint8_t, 256> table{};
    std::iota(table.begin(), table.end(), std::uint8_t(0));
    if (object.isNull() || object.isName("Identity"))
        return table;
    const auto function = PDFFunction::make(object, recording);
    if (!function || function->inputs() != 1 || function->outputs() != 1) {
        recording.notDrawn("the transfer function of a soft mask is invalid, and ignored");
        return table;
    }
    for (std::size_t value = 0; value < table.size(); ++value) {
        const double input = double(value) / 255;
        double coverage = 0;
        function->evaluate(std::span(&input, 1), std::span(&coverage, 1));
        table[value] = static_cast<std::uint8_t>(std::lround(std::clamp(coverage, 0.0, 1.0) * 255));
    }
    return table;
}

} // namespace

void ContentInterpreter::drawForm(const PDFObject& form)
{
    const PDFRecording::StreamUse use(_recording, form);
    if (!use) {
        _recording.notDrawn("a form that contains itself is not drawn");
        return;
    }
    if (form["Group"]["S"].isName("Transparency"))
        drawGroup(form);
    else
        runForm(form);
}

void ContentInterpreter::runForm(const PDFObject& form)
{
    pushState();
    if (const auto matrix = form["Matrix"].matrix())
        concatenate(*matrix);
    if (const auto box = form["BBox"].rect())
        clipToPath(adopt(CGPathCreateWithRect(*box, &_state.pageFromUser)), false);
    const PDFObject own = form["Resources"];
    const bool ignoresColors = _stream && _stream->ignoresColors;
    run(_recording.decode(form), own.isDictionary() ? own : resources(), ignoresColors);
    popState();
}

void ContentInterpreter::drawGroup(const PDFObject& form)
{
    const PDFObject attributes = form["Group"];
    if (attributes["K"].boolean())
        _recording.notDrawn("a knockout group is drawn without knocking out");
    const PDFCompositing outside = compositing(_state.fillAlpha);
    auto page = std::exchange(_list, std::make_shared<DisplayList>());
    const auto pageFromForm = CGAffineTransformConcat(
        form["Matrix"].matrix().value_or(CGAffineTransformIdentity), _state.pageFromUser);
    const auto formBox = form["BBox"].rect();
    const CGRect box = formBox ? CGRectApplyAffineTransform(*formBox, pageFromForm) : kEverything;
    const auto finish = [&] {
        const auto group = std::exchange(_list, std::move(page));
        appendGroup(group, outside, box, attributes["I"].boolean());
    };
    pushState();
    _state.fillAlpha = _state.strokeAlpha = 1;
    _state.blendMode = kCGBlendModeNormal;
    _state.softMask = nullptr;
    try {
        runForm(form);
    } catch (const PDFLimitExceeded&) {
        finish(); // with what was recorded of it
        throw;
    }
    popState();
    finish();
}

void ContentInterpreter::appendGroup(
    const std::shared_ptr<DisplayList>& group, const PDFCompositing& compositing, CGRect box, bool isIsolated)
{
    if (group->items.empty())
        return;
    PathItem* const path = onlyPath(*group);
    const bool isLayer = !path && (!compositing.isPlain() || (isIsolated && group->blends));
    if (isLayer) {
        if (!isIsolated && group->blends)
            _recording.notDrawn("a group blends into itself alone, not into what lies below");
        auto item = std::make_unique<GroupItem>();
        item->compositing = compositing;
        item->list = group;
        item->box = box;
        _list->blends |= compositing.blendMode != kCGBlendModeNormal;
        _list->items.emplace_back(std::move(item));
        return;
    }
    if (path) { // one shape as a group is the same as without
        path->compositing.alpha *= compositing.alpha;
        path->compositing.blendMode = compositing.blendMode;
        path->compositing.softMask = compositing.softMask;
        group->blends = compositing.blendMode != kCGBlendModeNormal;
    }
    _list->blends |= group->blends;
    std::move(group->items.begin(), group->items.end(), std::back_inserter(_list->items));
}

void ContentInterpreter::setSoftMask(const PDFObject& mask)
{
    if (!mask.isDictionary()) {
        _state.softMask = nullptr;
        return;
    }
    const bool isRepeated = _lastMask.mask && _lastMask.dictionary.isSameAs(mask)
        && CGAffineTransformEqualToTransform(_lastMask.pageFromUser, _state.pageFromUser);
    if (!isRepeated)
        _lastMask = {makeSoftMask(mask), mask, _state.pageFromUser};
    _state.softMask = _lastMask.mask;
}

std::shared_ptr<const PDFSoftMask> ContentInterpreter::makeSoftMask(const PDFObject& mask)
{
    const PDFObject form = mask["G"];
    const PDFRecording::StreamUse use(_recording, form);
    if (!form.isStream() || !use) {
        _recording.notDrawn("a soft mask is invalid, and ignored");
        return nullptr;
    }
    auto result = std::make_shared<PDFSoftMask>();
    result->isLuminosity = mask["S"].isName("Luminosity");
    PDFGraphicsState initial;
    initial.pageFromUser = _state.pageFromUser;
    ContentInterpreter interpreter(_recording, std::move(initial));
    interpreter.runForm(form);
    result->list = interpreter.takeList();
    result->transfer = transferTable(mask["TR"], _recording);
    if (!result->isLuminosity)
        return result;
    auto space = PDFColorSpace::make(form["Group"]["CS"], form["Resources"], _recording);
    if (!space || space->isPattern())
        space = PDFColorSpace::deviceGray();
    const auto backdrop = mask["BC"].numbers();
    result->backdrop =
        space->color(backdrop.size() >= space->components() ? backdrop : space->initialComponents());
    return result;
}
