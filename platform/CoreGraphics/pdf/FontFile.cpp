#include "CoreGraphics/pdf/FontFile.h"

#include "CoreGraphics/pdf/FreeTypeLibrary.h"
#include "CoreGraphics/pdf/PDFRecording.h"

#include FT_CID_H
#include FT_FONT_FORMATS_H
#include FT_OUTLINE_H

#include <algorithm>
#include <array>
#include <ctime>
#include <vector>

namespace {

/// Whether a file starts as one of the formats that PDF files contain. FreeType reads others, compressed ones
/// among them, whose size could not be limited.
bool isKnownFormat(std::string_view bytes)
{
    using namespace std::string_view_literals;
    constexpr std::array kStarts{"\0\1\0\0"sv, "true"sv, "OTTO"sv, "ttcf"sv, "%!"sv, "\x80\1"sv, "\1\0"sv};
    return std::any_of(
        kStarts.begin(), kStarts.end(), [bytes](std::string_view start) { return bytes.starts_with(start); });
}

/// Composed glyphs have two or three parts. FreeType has no limit: of a few glyphs that have each other as
/// parts many times, it would read billions, and a long chain of them would exceed the stack.
constexpr std::size_t kMostParts = 256;

/// Microseconds that this thread has worked.
double threadMicroseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e6 + double(time.tv_nsec) / 1e3;
}

/// Charges the budget for a glyph that takes long. Hostile ones can keep FreeType busy for a tenth of a
/// second each; it cannot be stopped, and nothing else tells what they cost.
class LoadingCharge {
public:
    /// Common glyphs take a few microseconds, which the operator that shows them pays.
    static constexpr double kFreeMicroseconds = 1000;
    static constexpr double kOperatorsPerMicrosecond = 4;

    explicit LoadingCharge(PDFBudget& budget)
        : _budget(budget)
        , _start(threadMicroseconds())
    {
    }
    void spend() const
    {
        const double time = threadMicroseconds() - _start;
        if (time > kFreeMicroseconds)
            _budget.spendOperators(std::size_t(time * kOperatorsPerMicrosecond));
    }

private:
    PDFBudget& _budget;
    double _start;
};

/// Where the parts of a glyph's outline go.
struct OutlinePen {
    CGMutablePathRef path;
    CGAffineTransform emFromUnits;
    bool isOpen = false;
};

OutlinePen& penOf(void* pen)
{
    return *static_cast<OutlinePen*>(pen);
}

int moveTo(const FT_Vector* to, void* user)
{
    OutlinePen& pen = penOf(user);
    if (pen.isOpen)
        CGPathCloseSubpath(pen.path);
    pen.isOpen = true;
    CGPathMoveToPoint(pen.path, &pen.emFromUnits, double(to->x), double(to->y));
    return 0;
}

int lineTo(const FT_Vector* to, void* user)
{
    CGPathAddLineToPoint(penOf(user).path, &penOf(user).emFromUnits, double(to->x), double(to->y));
    return 0;
}

int quadraticTo(const FT_Vector* control, const FT_Vector* to, void* user)
{
    CGPathAddQuadCurveToPoint(penOf(user).path, &penOf(user).emFromUnits, double(control->x),
        double(control->y), double(to->x), double(to->y));
    return 0;
}

int cubicTo(const FT_Vector* control1, const FT_Vector* control2, const FT_Vector* to, void* user)
{
    CGPathAddCurveToPoint(penOf(user).path, &penOf(user).emFromUnits, double(control1->x),
        double(control1->y), double(control2->x), double(control2->y), double(to->x), double(to->y));
    return 0;
}

constexpr FT_Outline_Funcs kOutlineFunctions{moveTo, lineTo, quadraticTo, cubicTo, 0, 0};

} // namespace

/// FreeType's face, with the character maps that encodings of PDF files need.
class FontFile::Face {
public:
    Face(std::shared_ptr<FreeTypeLibrary> library, FT_Face face)
        : _library(std::move(library))
        , _face(face)
    {
        for (int index = 0; index < face->num_charmaps; ++index) {
            const FT_CharMap map = face->charmaps[index];
            switch (map->encoding) {
            case FT_ENCODING_UNICODE:
                this->map(CharacterMap::Unicode) = map;
                break;
            case FT_ENCODING_MS_SYMBOL:
                this->map(CharacterMap::Symbol) = map;
                break;
            case FT_ENCODING_APPLE_ROMAN:
                this->map(CharacterMap::MacRoman) = map;
                break;
            case FT_ENCODING_ADOBE_STANDARD:
            case FT_ENCODING_ADOBE_EXPERT:
            case FT_ENCODING_ADOBE_CUSTOM:
            case FT_ENCODING_ADOBE_LATIN_1:
                this->map(CharacterMap::BuiltIn) = map;
                break;
            default:
                break;
            }
        }
        // FreeType selects the best of several.
        if (face->charmap && face->charmap->encoding == FT_ENCODING_UNICODE)
            this->map(CharacterMap::Unicode) = face->charmap;
    }
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;
    ~Face() { FT_Done_Face(_face); }

    FT_Face operator->() const { return _face; }
    FT_Face face() const { return _face; }
    FT_CharMap& map(CharacterMap map) { return _maps[std::size_t(map)]; }
    double unitsPerEm() const { return std::max<double>(_face->units_per_EM, 1); }

private:
    std::shared_ptr<FreeTypeLibrary> _library; ///< which the face belongs to
    FT_Face _face;
    std::array<FT_CharMap, 4> _maps{};
};

FontFile::FontFile(std::string bytes)
    : _bytes(std::move(bytes))
{
}

FontFile::~FontFile() = default;

std::shared_ptr<FontFile> FontFile::open(std::string bytes, std::shared_ptr<FreeTypeLibrary> library)
{
    if (!isKnownFormat(bytes) || !library->handle())
        return nullptr;
    std::shared_ptr<FontFile> file(new FontFile(std::move(bytes)));
    FT_Face face = nullptr;
    const auto* data = reinterpret_cast<const FT_Byte*>(file->_bytes.data());
    if (FT_New_Memory_Face(library->handle(), data, FT_Long(file->_bytes.size()), 0, &face) != 0)
        return nullptr;
    file->_face = std::make_unique<Face>(std::move(library), face);
    if (!FT_IS_SCALABLE(face))
        return nullptr;
    return file;
}

bool FontFile::isTrueType() const
{
    return std::string_view(FT_Get_Font_Format(_face->face())) == "TrueType";
}

bool FontFile::hasCharacterMap(CharacterMap map) const
{
    return _face->map(map) != nullptr;
}

std::uint32_t FontFile::glyphForCode(CharacterMap map, std::uint32_t code) const
{
    if (!hasCharacterMap(map) || FT_Set_Charmap(_face->face(), _face->map(map)) != 0)
        return 0;
    return FT_Get_Char_Index(_face->face(), code);
}

std::uint32_t FontFile::glyphNamed(std::string_view name, PDFBudget& budget)
{
    if (!_hasReadNames && FT_HAS_GLYPH_NAMES(_face->face())) {
        const auto count = std::uint32_t(std::clamp<FT_Long>((*_face)->num_glyphs, 0, 0xFFFF));
        budget.spendOperators(count / 4);
        std::array<char, 128> buffer{};
        for (std::uint32_t glyph = 0; glyph < count; ++glyph)
            if (FT_Get_Glyph_Name(_face->face(), glyph, buffer.data(), unsigned(buffer.size())) == 0)
                _glyphsByName.emplace(buffer.data(), glyph); // the first glyph of a name counts
    }
    _hasReadNames = true;
    const auto found = _glyphsByName.find(std::string(name));
    return found != _glyphsByName.end() ? found->second : 0;
}

std::uint32_t FontFile::glyphForCID(std::uint32_t cid, PDFBudget& budget)
{
    // A bare CFF font with character collection numbers takes these for its glyphs' numbers; in an OpenType
    // file it does not. Other fonts have no such numbers.
    if (!FT_IS_CID_KEYED(_face->face()) || !FT_IS_SFNT(_face->face()))
        return cid;
    if (!_hasReadCIDs) {
        const auto count = std::uint32_t(std::clamp<FT_Long>((*_face)->num_glyphs, 0, 0xFFFF));
        budget.spendOperators(count / 4);
        for (std::uint32_t glyph = 0; glyph < count; ++glyph) {
            FT_UInt number = 0;
            if (FT_Get_CID_From_Glyph_Index(_face->face(), glyph, &number) == 0)
                _glyphsByCID.emplace(number, glyph);
        }
        _hasReadCIDs = true;
    }
    const auto found = _glyphsByCID.find(cid);
    return found != _glyphsByCID.end() ? found->second : 0;
}

const FontFile::Glyph& FontFile::glyph(std::uint32_t number, PDFBudget& budget)
{
    const auto found = _glyphs.find(number);
    if (found != _glyphs.end())
        return found->second;
    const bool isReadable = !isTrueType() || partCount(number, budget) <= kMostParts;
    const LoadingCharge charge(budget);
    const Glyph& loaded = _glyphs.emplace(number, isReadable ? load(number) : Glyph()).first->second;
    charge.spend();
    return loaded;
}

std::size_t FontFile::partCount(std::uint32_t number, PDFBudget& budget, std::size_t depth)
{
    const auto [place, isNew] = _partCounts.emplace(number, kMostParts + 1);
    if (!isNew || depth > kMostParts)
        return place->second;
    const LoadingCharge charge(budget);
    std::vector<std::uint32_t> parts;
    if (FT_Load_Glyph(_face->face(), number, FT_LOAD_NO_RECURSE) == 0) {
        const FT_GlyphSlot slot = (*_face)->glyph;
        for (FT_UInt index = 0; index < slot->num_subglyphs && index <= kMostParts; ++index) {
            FT_Int part = 0;
            FT_UInt flags = 0;
            FT_Int first = 0;
            FT_Int second = 0;
            FT_Matrix transform{};
            if (FT_Get_SubGlyph_Info(slot, index, &part, &flags, &first, &second, &transform) == 0)
                parts.push_back(std::uint32_t(part));
        }
    }
    charge.spend();
    std::size_t count = 1;
    for (const std::uint32_t part : parts)
        if (count <= kMostParts)
            count += partCount(part, budget, depth + 1);
    return _partCounts[number] = count;
}

FontFile::Glyph FontFile::load(std::uint32_t number) const
{
    if (FT_Load_Glyph(_face->face(), number, FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING) != 0
        || (*_face)->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return {};
    const double scale = 1 / _face->unitsPerEm();
    auto path = adopt(CGPathCreateMutable());
    OutlinePen pen{path.get(), CGAffineTransformMakeScale(scale, scale)};
    FT_Outline_Decompose(&(*_face)->glyph->outline, &kOutlineFunctions, &pen);
    Glyph glyph{nullptr, double((*_face)->glyph->metrics.horiAdvance) * scale};
    if (pen.isOpen) {
        CGPathCloseSubpath(path.get());
        glyph.outline = std::move(path);
    }
    return glyph;
}

FontFiles::FontFiles() = default;

FontFiles::~FontFiles() = default;

std::shared_ptr<FontFile> FontFiles::open(const PDFObject& stream, PDFRecording& recording)
{
    if (const auto found = _files.find(stream.id()); found != _files.end())
        return found->second;
    if (!_library)
        _library = std::make_shared<FreeTypeLibrary>();
    auto file = FontFile::open(recording.decode(stream), _library);
    _files.emplace(stream.id(), file);
    return file;
}

std::shared_ptr<const InstalledFace> FontFiles::findInstalled(InstalledFace::Wanted wanted)
{
    if (_installed.size() >= kMostNames && !_installed.contains(wanted))
        wanted.name.clear();
    const auto found = _installed.find(wanted);
    if (found != _installed.end())
        return found->second;
    auto face = InstalledFace::find(wanted);
    _installed.emplace(std::move(wanted), face);
    return face;
}
