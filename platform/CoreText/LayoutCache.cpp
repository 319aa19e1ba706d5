#include "CoreText/LayoutCache.h"

#include <atomic>

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

std::shared_ptr<const ShapedText> LayoutCache::find(const Key& key)
{
    if (const auto* line = _lines.find(key))
        return (*line)->shaped;
    if (const auto* found = _newLines.find(key)) {
        const std::shared_ptr<const Line> line = *found;
        insert(_lines, key.hash, line); // the small cache evicts it later
        return line->shaped;
    }
    return nullptr;
}

std::shared_ptr<const ShapedText> LayoutCache::insert(const Key& key, std::shared_ptr<ShapedText> shaped)
{
    static std::atomic<std::uint64_t> last{0};
    shaped->serial = ++last;
    if (key.units.size() > kCapacity / 4) // several pages of a book
        return shaped;

    std::size_t& newHash = _newHashes[key.hash % _newHashes.size()];
    const bool isNew = newHash != key.hash;
    newHash = key.hash;
    if (isNew && key.units.size() > kNewCapacity)
        return shaped; // it would evict all labels, perhaps for a text that is measured once
    const auto line = std::make_shared<const Line>(Line{std::u16string(key.units), shaped});
    insert(isNew ? _newLines : _lines, key.hash, line);
    return shaped;
}

void LayoutCache::insert(Lines& lines, std::size_t hash, const std::shared_ptr<const Line>& line)
{
    lines.insert({line->key, hash}, line, line->key.size());
    lines.evict();
}
