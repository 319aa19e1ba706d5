#include "CoreGraphics/pdf/PDFScreening.h"

#include "CoreGraphics/pdf/ContentLexer.h"
#include "CoreGraphics/pdf/LimitedPipeline.h"
#include "CoreGraphics/pdf/PDFBudget.h"
#include "CoreGraphics/pdf/RunLengths.h"

#include <algorithm>
#include <set>

namespace {

/// Rows of images and tables stay far below.
constexpr double kMostColumns = 1'000'000;
constexpr double kMostBits = 32;
/// Deflate makes at most 1,032 bytes of one.
constexpr std::size_t kLargestExpansion = 1'032;
/// Each update of a file can add one.
constexpr std::size_t kMostTables = 16;
/// Expanded streams of this size do no harm.
constexpr std::size_t kHarmlessSize = 4 << 20;

/// What the tables and object streams of a file of this size may decode to. Both are text that shrinks to a
/// fifth or so.
std::size_t reasonableSize(std::size_t fileSize)
{
    return kHarmlessSize + 8 * fileSize;
}

/// Counts bytes only. False when there are more than `most`.
bool isLimited(QPDFObjectHandle stream, std::size_t& most)
{
    CountingPipeline pipeline(most);
    try {
        stream.pipeStreamData(&pipeline, nullptr, 0, qpdf_dl_specialized, true);
    } catch (const PDFLimitExceeded&) {
        return false;
    } catch (const std::exception&) {
        // Damaged: what comes before the damage counts.
    }
    most -= pipeline.count();
    return true;
}

/// The next character behind white space; 0 at the end.
char nextCharacter(const ContentLexer& lexer)
{
    const auto content = lexer.content();
    std::size_t position = lexer.position();
    while (position < content.size() && ContentLexer::isSpace(content[position]))
        ++position;
    return position < content.size() ? content[position] : '\0';
}

/// False for a number above `most`, and for what could stand for one: a reference, or a number behind a
/// comment. Looks at few characters, since files may repeat names millions of times.
bool isAtMost(ContentLexer lexer, double most)
{
    const char start = nextCharacter(lexer);
    if (start == '%')
        return false;
    if (start != '+' && start != '-' && start != '.' && (start < '0' || start > '9'))
        return true;
    ContentToken value;
    lexer.next(value);
    const char end = nextCharacter(lexer);
    return value.number <= most && end != '%' && (end < '0' || end > '9');
}

/// Whether a stream has this one filter, and not a list of several, each of which can expand what the last
/// one expanded.
bool isDeflate(const ContentToken& filter)
{
    const ContentToken& name = filter.isArray() && filter.items.size() == 1 ? filter.items[0] : filter;
    return name.isName() && name.text == "FlateDecode";
}

/// Walks through all names of a file, wherever they occur.
class NameScanner {
public:
    explicit NameScanner(std::string_view bytes)
        : _bytes(bytes)
    {
    }

    bool findsReasonableTables()
    {
        for (auto slash = _bytes.find('/'); slash != std::string_view::npos;
             slash = _bytes.find('/', slash + 1)) {
            if (!mayMatter(slash))
                continue;
            ContentLexer lexer(_bytes);
            lexer.setPosition(slash);
            lexer.next(_name);
            if (_name.text == "Columns" && !isAtMost(lexer, kMostColumns))
                return false;
            if ((_name.text == "Colors" || _name.text == "BitsPerComponent") && !isAtMost(lexer, kMostBits))
                return false;
            if (_name.text == "XRef" && (++_tables > kMostTables || !isReasonableTable(slash)))
                return false;
        }
        return true;
    }

private:
    /// A quick test on the first character of a name, which may be escaped.
    bool mayMatter(std::size_t slash) const
    {
        const char first = slash + 1 < _bytes.size() ? _bytes[slash + 1] : '\0';
        return first == 'C' || first == 'B' || first == 'X' || first == '#';
    }

    /// Whether the stream whose dictionary has the name at `slash` decodes to a table of reasonable size.
    /// False when that cannot be told.
    bool isReasonableTable(std::size_t slash)
    {
        constexpr std::string_view kObject = "obj";
        const auto object = _bytes.rfind(kObject, slash);
        if (object == std::string_view::npos)
            return false;
        ContentLexer lexer(_bytes);
        lexer.setPosition(object + kObject.size());
        ContentToken dictionary;
        ContentToken keyword;
        if (!lexer.next(dictionary) || !dictionary.isDictionary() || lexer.position() < slash
            || !lexer.next(keyword) || keyword.text != "stream")
            return false;
        const auto& items = dictionary.items;
        for (std::size_t index = 0; index + 1 < items.size(); ++index) {
            if (items[index].isName() && items[index].text == "Filter" && !isDeflate(items[index + 1]))
                return false;
        }
        return _bytes.size() <= kHarmlessSize / kLargestExpansion || decodesWithinLimit(lexer.position());
    }

    /// Decodes what starts behind the keyword "stream".
    bool decodesWithinLimit(std::size_t keywordEnd)
    {
        std::size_t start = _bytes.find('\n', keywordEnd);
        if (start == std::string_view::npos)
            return false;
        ++start;
        QPDF scratch;
        scratch.emptyPDF();
        auto stream = QPDFObjectHandle::newStream(&scratch);
        stream.replaceStreamData(std::string(_bytes.substr(start)), QPDFObjectHandle::newName("/FlateDecode"),
            QPDFObjectHandle::newNull());
        return isLimited(stream, _sizeLeft);
    }

    std::string_view _bytes;
    std::size_t _sizeLeft = reasonableSize(_bytes.size());
    std::size_t _tables = 0;
    ContentToken _name;
};

} // namespace

bool hasReasonableTables(std::string_view bytes)
{
    try {
        return NameScanner(bytes).findsReasonableTables();
    } catch (const PDFLimitExceeded&) { // nested too deeply to be a table
        return false;
    }
}

bool hasReasonableObjectStreams(QPDF& pdf, std::size_t fileSize)
{
    constexpr int kInObjectStream = 2;
    std::set<int> streams;
    for (const auto& [id, entry] : pdf.getXRefTable()) {
        if (entry.getType() == kInObjectStream)
            streams.insert(entry.getObjStreamNumber());
    }
    std::size_t most = reasonableSize(fileSize);
    return std::all_of(streams.begin(), streams.end(), [&](int number) {
        auto stream = pdf.getObjectByID(number, 0);
        // No program writes objects in run lengths, which qpdf decodes as a whole.
        return !stream.isStream() || (!hasRunLengths(PDFObject(stream)["Filter"]) && isLimited(stream, most));
    });
}
