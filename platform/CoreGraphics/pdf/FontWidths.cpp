#include "CoreGraphics/pdf/FontWidths.h"

#include "CoreGraphics/pdf/PDFBudget.h"
#include "CoreGraphics/pdf/PDFObject.h"

#include <algorithm>

namespace {

constexpr int kLastCID = 0xFFFF;

/// Runs of a file that are searched for a CID.
constexpr std::size_t kMostOverlaps = 16;

} // namespace

SimpleWidths::SimpleWidths(const PDFObject& font, const PDFObject& descriptor)
    : _areStated(font["Widths"].isArray())
{
    const PDFObject widths = font["Widths"];
    const double missing = descriptor["MissingWidth"].number();
    const long first = font["FirstChar"].integer();
    for (long code = 0; code < 256; ++code) {
        const long index = code - first;
        const bool isListed = index >= 0 && index < long(widths.size());
        _widths[std::size_t(code)] = (isListed ? widths.at(std::size_t(index)).number() : missing) / 1000;
    }
}

CIDMetrics::CIDMetrics(const PDFObject& array, std::size_t count, PDFBudget& budget)
    : _count(count)
{
    const std::size_t mostNumbers = (kLastCID + 1) * count;
    for (std::size_t index = 0; index + 1 < array.size() && _numbers.size() < mostNumbers;) {
        const int first = array.at(index).integer(-1);
        const PDFObject second = array.at(index + 1);
        const bool isList = second.isArray();
        const int last = second.integer(-1);
        std::vector<double> numbers;
        if (isList)
            numbers = second.numbers(mostNumbers);
        else
            for (std::size_t number = 0; number < count; ++number)
                numbers.push_back(array.at(index + 2 + number).number());
        index += isList ? 2 : 2 + count;
        budget.spendOperators(1 + numbers.size() / 16);
        if (first < 0 || first > kLastCID || numbers.size() < count || (!isList && last < first))
            continue;
        const auto end = isList ? std::size_t(first) + numbers.size() / count - 1 : std::size_t(last);
        add({std::uint32_t(first), std::uint32_t(std::min<std::size_t>(end, kLastCID)), 0, !isList}, numbers);
    }
    std::stable_sort(
        _runs.begin(), _runs.end(), [](const Run& one, const Run& other) { return one.first < other.first; });
}

void CIDMetrics::add(Run run, const std::vector<double>& numbers)
{
    run.index = _numbers.size();
    _runs.push_back(run);
    for (const double number : numbers)
        _numbers.push_back(float(number));
}

std::span<const float> CIDMetrics::find(std::uint32_t cid) const
{
    auto next = std::upper_bound(_runs.begin(), _runs.end(), cid,
        [](std::uint32_t number, const Run& run) { return number < run.first; });
    // A long run may begin before shorter ones that have ended.
    for (std::size_t tries = 0; tries < kMostOverlaps && next != _runs.begin(); ++tries) {
        const Run& run = *--next;
        if (cid > run.last)
            continue;
        const std::size_t steps = run.isConstant ? 0 : cid - run.first;
        return std::span(_numbers).subspan(run.index + steps * _count, _count);
    }
    return {};
}
