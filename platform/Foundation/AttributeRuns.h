#pragma once

#include <Foundation/NSAttributedString.h>

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

/// The dictionary itself if it cannot change, a copy of one that can; an empty one for null.
RetainPtr<NSDictionary> unchangingAttributes(RetainPtr<NSDictionary> attributes);

inline bool haveEqualAttributes(const NSAttributedString::Run& a, const NSAttributedString::Run& b)
{
    return a.attributes == b.attributes || a.attributes->isEqual(b.attributes);
}

/// Puts the runs of a new text together, one behind the other.
class AttributeRuns {
public:
    using Run = NSAttributedString::Run;

    /// Adds a run of that many units, or makes the last one longer if its attributes are equal.
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

    /// Adds what lies in a part of another text, with what `changed` makes of the attributes there.
    template <class Change> void append(std::span<const Run> runs, NSRange part, const Change& changed)
    {
        for (const Run& run : runs) {
            const NSUInteger begin = std::max(run.range.location, part.location);
            const NSUInteger end = std::min(NSMaxRange(run.range), NSMaxRange(part));
            if (begin < end)
                append(end - begin, changed(run.attributes));
        }
    }
    /// The same with attributes as they are.
    void append(std::span<const Run> runs, NSRange part)
    {
        append(runs, part, [](const RetainPtr<NSDictionary>& attributes) { return attributes; });
    }

    std::vector<Run> take() { return std::move(_runs); }

private:
    std::vector<Run> _runs;
    NSUInteger _length = 0;
};
