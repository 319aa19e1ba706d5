#include "CoreText/FontFace.h"

#include "CoreText/pango/FaceReader.h"

#include <mutex>
#include <unordered_map>

namespace {

/// Images are large, and text shows few of them.
constexpr std::size_t kMaximumImages = 64;

} // namespace

struct FontFace::Glyphs {
    std::mutex mutex;
    std::unordered_map<std::uint32_t, GlyphPicture> pictures;
    std::unordered_map<std::uint32_t, RetainPtr<CGImage>> images;
};

FontFace::FontFace(std::unique_ptr<Reader> reader)
    : _reader(std::move(reader))
    , _glyphs(std::make_unique<Glyphs>())
    , _metrics(_reader->metrics())
{
}

FontFace::~FontFace() = default;

std::uint32_t FontFace::glyph(char32_t character) const
{
    return _reader->glyph(character);
}

double FontFace::advance(std::uint32_t glyph) const
{
    return _reader->advance(glyph);
}

bool FontFace::hasColors() const
{
    return _reader->hasColors();
}

const GlyphPicture& FontFace::picture(std::uint32_t glyph) const
{
    const std::lock_guard guard(_glyphs->mutex);
    const auto found = _glyphs->pictures.find(glyph);
    if (found != _glyphs->pictures.end())
        return found->second;
    return _glyphs->pictures.emplace(glyph, _reader->picture(glyph)).first->second;
}

RetainPtr<CGImage> FontFace::image(std::uint32_t glyph) const
{
    const std::lock_guard guard(_glyphs->mutex);
    const auto found = _glyphs->images.find(glyph);
    if (found != _glyphs->images.end())
        return found->second;
    if (_glyphs->images.size() == kMaximumImages)
        _glyphs->images.clear();
    return _glyphs->images.emplace(glyph, _reader->image(glyph)).first->second;
}
