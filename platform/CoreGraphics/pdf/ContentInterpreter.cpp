#include "CoreGraphics/pdf/ContentInterpreter.h"

#include "CoreGraphics/CGPathInternal.h"
#include "CoreGraphics/pdf/PDFFile.h"

#include <algorithm>

namespace {

/// The up to three characters of an operator's name as a number, in the order of the names; 0 for longer
/// words.
constexpr std::uint32_t keyOf(std::string_view name)
{
    if (name.size() > 3)
        return 0;
    std::uint32_t key = 0;
    for (std::size_t index = 0; index < 3; ++index)
        key = key << 8 | (index < name.size() ? static_cast<unsigned char>(name[index]) : 0);
    return key;
}

} // namespace

/// An operator's name, its function, and how many numbers must precede it.
struct ContentInterpreter::Operator {
    constexpr Operator(std::string_view name, void (ContentInterpreter::*run)(), std::size_t numbers = 0)
        : key(keyOf(name))
        , run(run)
        , numbers(numbers)
    {
    }

    std::uint32_t key;
    void (ContentInterpreter::*run)();
    std::size_t numbers;
};

struct ContentInterpreter::OperatorTable {
    using Self = ContentInterpreter;

    /// Sorted by name, for a binary search.
    static constexpr std::array kOperators{
        Operator{"\"", &Self::showTextOnNextLineWithSpacing},
        Operator{"'", &Self::showTextOnNextLine},
        Operator{"B", &Self::fillAndStroke},
        Operator{"B*", &Self::fillEvenOddAndStroke},
        Operator{"BDC", &Self::beginMarkedContentWithProperties},
        Operator{"BI", &Self::drawInlineImage},
        Operator{"BMC", &Self::beginMarkedContent},
        Operator{"BT", &Self::beginText},
        Operator{"BX", &Self::beginCompatibility},
        Operator{"CS", &Self::setStrokeSpace},
        Operator{"DP", &Self::ignore},
        Operator{"Do", &Self::drawObject},
        Operator{"EMC", &Self::endMarkedContent},
        Operator{"ET", &Self::endText},
        Operator{"EX", &Self::endCompatibility},
        Operator{"F", &Self::fill},
        Operator{"G", &Self::setStrokeGray, 1},
        Operator{"J", &Self::setLineCap, 1},
        Operator{"K", &Self::setStrokeCMYK, 4},
        Operator{"M", &Self::setMiterLimit, 1},
        Operator{"MP", &Self::ignore},
        Operator{"Q", &Self::restore},
        Operator{"RG", &Self::setStrokeRGB, 3},
        Operator{"S", &Self::stroke},
        Operator{"SC", &Self::setStrokeColor},
        Operator{"SCN", &Self::setStrokeColor},
        Operator{"T*", &Self::nextLine},
        Operator{"TD", &Self::moveLineAndSetLeading, 2},
        Operator{"TJ", &Self::showTextWithOffsets},
        Operator{"TL", &Self::setLeading, 1},
        Operator{"Tc", &Self::setCharacterSpacing, 1},
        Operator{"Td", &Self::moveLine, 2},
        Operator{"Tf", &Self::setFont, 1},
        Operator{"Tj", &Self::showText},
        Operator{"Tm", &Self::setTextMatrix, 6},
        Operator{"Tr", &Self::setRenderMode, 1},
        Operator{"Ts", &Self::setRise, 1},
        Operator{"Tw", &Self::setWordSpacing, 1},
        Operator{"Tz", &Self::setHorizontalScale, 1},
        Operator{"W", &Self::clip},
        Operator{"W*", &Self::clipEvenOdd},
        Operator{"b", &Self::closeFillAndStroke},
        Operator{"b*", &Self::closeFillEvenOddAndStroke},
        Operator{"c", &Self::curveTo, 6},
        Operator{"cm", &Self::concatenate, 6},
        Operator{"cs", &Self::setFillSpace},
        Operator{"d", &Self::setDash, 1},
        Operator{"d0", &Self::ignore},
        Operator{"d1", &Self::setGlyphWidthAndBox, 6},
        Operator{"f", &Self::fill},
        Operator{"f*", &Self::fillEvenOdd},
        Operator{"g", &Self::setFillGray, 1},
        Operator{"gs", &Self::setExtendedState},
        Operator{"h", &Self::closePath},
        Operator{"i", &Self::ignore},
        Operator{"j", &Self::setLineJoin, 1},
        Operator{"k", &Self::setFillCMYK, 4},
        Operator{"l", &Self::lineTo, 2},
        Operator{"m", &Self::moveTo, 2},
        Operator{"n", &Self::endPath},
        Operator{"q", &Self::save},
        Operator{"re", &Self::rectangle, 4},
        Operator{"rg", &Self::setFillRGB, 3},
        Operator{"ri", &Self::ignore},
        Operator{"s", &Self::closeAndStroke},
        Operator{"sc", &Self::setFillColor},
        Operator{"scn", &Self::setFillColor},
        Operator{"sh", &Self::paintShading},
        Operator{"v", &Self::curveFromCurrentPoint, 4},
        Operator{"w", &Self::setLineWidth, 1},
        Operator{"y", &Self::curveToEndPoint, 4},
    };
    /// Null for an unknown name.
    static const Operator* find(std::string_view name)
    {
        static_assert(std::ranges::is_sorted(kOperators, {}, &Operator::key));
        const std::uint32_t key = keyOf(name);
        const auto* const found = std::ranges::lower_bound(kOperators, key, {}, &Operator::key);
        return found != kOperators.end() && found->key == key ? found : nullptr;
    }
};

namespace {

/// Whether an item mixes with what lies below in another way than by its alpha.
template <class Item> bool blends(const Item& item)
{
    if constexpr (requires { item.compositing; })
        return item.compositing.blendMode != kCGBlendModeNormal;
    else if constexpr (requires { item->compositing; })
        return item->compositing.blendMode != kCGBlendModeNormal;
    else
        return false;
}

} // namespace

ContentInterpreter::ContentInterpreter(PDFRecording& recording, PDFGraphicsState initial)
    : _recording(recording)
    , _state(std::move(initial))
    , _list(std::make_shared<DisplayList>())
{
}

ContentInterpreter::~ContentInterpreter() = default;

void ContentInterpreter::run(std::string_view content, const PDFObject& resources, bool ignoresColors)
{
    Stream stream(content, resources);
    stream.ignoresColors = ignoresColors;
    run(stream);
}

void ContentInterpreter::run(Stream& stream)
{
    const PDFRecording::Nesting nesting(_recording);
    _recording.budget().spendOperators(kPDFLimits.operatorsPerStream);

    stream.pageFromContent = _state.pageFromUser;
    Stream* const outer = std::exchange(_stream, &stream);
    // A form starts with a path and operands of its own.
    auto outerPath = std::exchange(_path, adopt(CGPathCreateMutable()));
    auto outerOperands = std::exchange(_operands, {});
    _operandCount = 0;
    pushState();
    stream.bottomOfStack = _stack.size();

    runOperators();

    while (_stack.size() > stream.bottomOfStack)
        popState();
    popState();
    _stream = outer;
    _path = std::move(outerPath);
    _operands = std::move(outerOperands);
    _operandCount = 0;
}

std::shared_ptr<const DisplayList> ContentInterpreter::takeList()
{
    return std::exchange(_list, std::make_shared<DisplayList>());
}

void ContentInterpreter::runOperators()
{
    for (;;) {
        if (_operandCount == _operands.size())
            _operands.emplace_back();
        ContentToken& token = _operands[_operandCount];
        if (!_stream->lexer.next(token))
            return;
        if (token.kind != ContentToken::Kind::Operator) {
            _operandCount = std::min(_operandCount + 1, kPDFLimits.operands);
            continue;
        }
        _recording.budget().spendOperators(1);
        runOperator(token);
        _operandCount = 0;
    }
}

void ContentInterpreter::runOperator(const ContentToken& token)
{
    const Operator* const found = OperatorTable::find(token.text);
    if (!found) {
        if (_stream->compatibilityLevels == 0)
            _recording.notDrawn("the operator " + token.text.substr(0, 32) + " is unknown");
        return;
    }
    if (_operandCount < found->numbers)
        return;
    const std::size_t first = _operandCount - found->numbers;
    for (std::size_t index = 0; index < found->numbers; ++index) {
        if (!_operands[first + index].isNumber())
            return;
        _numbers[index] = _operands[first + index].number;
    }
    (this->*found->run)();
}

const ContentToken& ContentInterpreter::operand(std::size_t fromLast) const
{
    static const ContentToken none;
    return fromLast < _operandCount ? _operands[_operandCount - 1 - fromLast] : none;
}

std::vector<double> ContentInterpreter::numericOperands() const
{
    std::vector<double> result;
    for (std::size_t index = 0; index < _operandCount; ++index) {
        if (_operands[index].isNumber())
            result.push_back(_operands[index].number);
    }
    return result;
}

PDFObject ContentInterpreter::objectOf(const ContentToken& token)
{
    using Kind = ContentToken::Kind;
    switch (token.kind) {
    case Kind::Boolean:
        return PDFObject::makeBoolean(token.number != 0);
    case Kind::Number:
        return PDFObject::makeNumber(token.number);
    case Kind::Name:
        return PDFObject::makeName(token.text);
    case Kind::String:
        return PDFObject::makeString(token.text);
    case Kind::Array: {
        std::vector<PDFObject> items;
        items.reserve(token.items.size());
        for (const auto& item : token.items)
            items.push_back(objectOf(item));
        return PDFObject::makeArray(items);
    }
    case Kind::Dictionary: {
        std::map<std::string, PDFObject> entries;
        for (std::size_t index = 0; index + 1 < token.items.size(); index += 2) {
            if (token.items[index].isName())
                entries.emplace(token.items[index].text, objectOf(token.items[index + 1]));
        }
        return PDFObject::makeDictionary(entries);
    }
    default:
        return {};
    }
}

PDFObject ContentInterpreter::resource(const char* category, const std::string& name) const
{
    return _stream->resources[category][name];
}

void ContentInterpreter::append(DisplayItem item)
{
    _recording.budget().spendItems(1);
    std::visit([this](const auto& content) { _list->blends |= blends(content); }, item);
    _list->items.push_back(std::move(item));
}

void ContentInterpreter::pushState()
{
    _stack.push_back(_state);
    _state.hasSavedClip = false;
}

void ContentInterpreter::popState()
{
    const bool hasSavedClip = _state.hasSavedClip;
    _state = std::move(_stack.back());
    _stack.pop_back();
    if (hasSavedClip)
        append(RestoreItem());
}

void ContentInterpreter::save()
{
    if (_stack.size() - _stream->bottomOfStack >= kPDFLimits.savedStates)
        ++_stream->uncountedSaves;
    else
        pushState();
}

void ContentInterpreter::restore()
{
    if (_stream->uncountedSaves > 0)
        --_stream->uncountedSaves;
    else if (_stack.size() > _stream->bottomOfStack)
        popState();
}

void ContentInterpreter::beginMarkedContent()
{
    _stream->markedContent.push_back(false);
}

void ContentInterpreter::beginMarkedContentWithProperties()
{
    const bool isHidden = operand(1).isName() && operand(1).text == "OC" && operand().isName()
        && !_recording.file().isVisible(resource("Properties", operand().text));
    _stream->markedContent.push_back(isHidden);
    _stream->hiddenLevels += isHidden;
}

void ContentInterpreter::endMarkedContent()
{
    if (_stream->markedContent.empty())
        return;
    _stream->hiddenLevels -= _stream->markedContent.back();
    _stream->markedContent.pop_back();
}

void ContentInterpreter::beginCompatibility()
{
    ++_stream->compatibilityLevels;
}

void ContentInterpreter::endCompatibility()
{
    if (_stream->compatibilityLevels > 0)
        --_stream->compatibilityLevels;
}
