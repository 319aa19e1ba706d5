#include "CoreText/LayoutCache.h"

#include <atomic>

namespace {

/// In UTF-16 units: some thousand labels, which with their glyphs take a few megabytes. Text longer than a
/// quarter of it, several pages of a book, is not cached.
constexpr std::size_t kCapacity = 65536;

} // namespace

void LayoutCache::makeKey(const NSString& text, std::span<const TextSpan> spans)
{
    const auto append = [this](std::uint32_t number) {
        _key += char16_t(number >> 16);
        _key += char16_t(number);
    };
    _key.clear();
    append(std::uint32_t(spans.size()));
    for (const TextSpan& span : spans) {
        append(std::uint32_t(span.end));
        append(span.typeface->serial);
        _key += span.hasLigatures ? u'f' : u'-';
    }
    _key += text.view();
}

std::shared_ptr<const ShapedText> LayoutCache::find()
{
    const auto found = _lineOfKey.find(_key);
    if (found == _lineOfKey.end())
        return nullptr;
    _lines.splice(_lines.begin(), _lines, found->second);
    return found->second->shaped;
}

std::shared_ptr<const ShapedText> LayoutCache::insert(std::shared_ptr<ShapedText> shaped)
{
    static std::atomic<std::uint64_t> last{0};
    shaped->serial = ++last;
    if (_key.size() > kCapacity / 4)
        return shaped;

    _unitCount += _key.size();
    while (_unitCount > kCapacity) {
        _unitCount -= _lines.back().key.size();
        _lineOfKey.erase(_lines.back().key);
        _lines.pop_back();
    }
    _lines.push_front({_key, shaped});
    _lineOfKey.emplace(_lines.front().key, _lines.begin());
    return shaped;
}
