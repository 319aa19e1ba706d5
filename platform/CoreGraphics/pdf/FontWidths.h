#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

class PDFBudget;
class PDFObject;

/// The advances of a simple font's glyphs, in ems.
class SimpleWidths {
public:
    /// Reads Widths, FirstChar and the descriptor's MissingWidth.
    SimpleWidths(const PDFObject& font, const PDFObject& descriptor);

    /// False when the file states no widths: then the font's own count.
    bool areStated() const { return _areStated; }
    double operator[](std::uint8_t code) const { return _widths[code]; }

private:
    bool _areStated;
    std::array<double, 256> _widths{};
};

/// Numbers of a CID-keyed font's glyphs: a few for each CID that the file mentions.
class CIDMetrics {
public:
    /// Reads an array like W or W2: "first [n n n]" gives numbers to CIDs from the first, "first last n"
    /// gives the same ones to all from first to last. Each CID has `count` numbers. Stops at something else.
    /// Where runs overlap, the one that starts last counts.
    CIDMetrics(const PDFObject& array, std::size_t count, PDFBudget& budget);

    /// Thousandths of an em; empty for a CID that is not mentioned.
    std::span<const float> find(std::uint32_t cid) const;

private:
    struct Run {
        std::uint32_t first = 0;
        std::uint32_t last = 0;
        std::size_t index = 0; ///< of the first number
        bool isConstant = false;
    };

    void add(Run run, const std::vector<double>& numbers);

    std::size_t _count;
    std::vector<Run> _runs; ///< by the first CID
    std::vector<float> _numbers;
};
