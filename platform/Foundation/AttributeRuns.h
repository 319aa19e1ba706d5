#pragma once

#include <Foundation/NSAttributedString.h>

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

/// The dictionary itself if it is immutable, else a copy; an empty one for null.
RetainPtr<NSDictionary> unchangingAttributes(RetainPtr<NSDictionary> attributes);

inline bool haveEqualAttributes(const NSAttributedString::Run& a, const NSAttributedString::Run& b)
{
    return a.attributes == b.attributes || a.attributes->isEqual(b.attributes);
}

/// Builds the runs of a new string from beginning to end.
class AttributeRuns {
public:
    using Run = NSAttributedString::Run;

    /// Appends a run of that many units, or extends the last one if its attributes are equal.
    void append(NSUInteger length, RetainPtr<NSDictionary> attributes)
    {
        if (length == 0)
            return;
        Run run{{_length, length}, std::move(attributes)};
        _length += length;
        if (!_runs.empty() && haveEqualAttributes(_runs.back(), run))
            _runs.back().range.length += length;
        else
            _runs.push_back(std::move(run));
    }

    /// Appends the runs in a part of another string, with the result of `changed` for each one's attributes.
    template <class Change> void append(std::span<const Run> runs, NSRange part, const Change& changed)
    {
        for (const Run& run : runs) {
            const NSUInteger begin = std::max(run.range.location, part.location);
            const NSUInteger end = std::min(NSMaxRange(run.range), NSMaxRange(part));
            if (begin < end)
                append(end - begin, changed(run.attributes));
        }
    }
    /// The same with unchanged attributes.
    void append(std::span<const Run> runs, NSRange part)
    {
        append(runs, part, [](const RetainPtr<NSDictionary>& attributes) { return attributes; });
    }

    std::vector<Run> take() { return std::move(_runs); }

private:
    std::vector<Run> _runs;
    NSUInteger _length = 0;
};
