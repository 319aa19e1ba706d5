#include "CoreGraphics/pdf/PDFPageTree.h"

#include "CoreGraphics/pdf/PDFBudget.h"

#include <cmath>

namespace {

/// US Letter, for pages that state no size.
constexpr CGRect kDefaultMediaBox{{0, 0}, {612, 792}};

bool hasArea(CGRect rect)
{
    return rect.size.width > 0 && rect.size.height > 0;
}

/// An entry of the page or of its nearest ancestor that has it.
PDFObject inherited(const PDFObject& page, const char* key)
{
    PDFObject node = page;
    for (std::size_t level = 0; level < kPDFLimits.pageTreeDepth && node.isDictionary(); ++level) {
        if (PDFObject value = node[key]; !value.isNull())
            return value;
        node = node["Parent"];
    }
    return {};
}

/// The part of a box inside `outer`; `fallback` where that has no area.
CGRect boxInside(CGRect outer, const PDFObject& box, CGRect fallback)
{
    const auto rect = box.rect();
    if (!rect)
        return fallback;
    const CGRect inside = CGRectIntersection(*rect, outer);
    return hasArea(inside) ? inside : fallback;
}

/// 0, 90, 180 or 270; 0 for what is not a multiple of 90.
int rotation(const PDFObject& rotate)
{
    const double degrees = std::fmod(rotate.number(), 360);
    return std::fmod(degrees, 90) == 0 ? (int(degrees) + 360) % 360 : 0;
}

PDFPageProperties propertiesOf(const PDFObject& page)
{
    PDFPageProperties result;
    result.dictionary = page;
    result.resources = inherited(page, "Resources");
    result.rotation = rotation(inherited(page, "Rotate"));
    const auto mediaBox = inherited(page, "MediaBox").rect();
    result.mediaBox = mediaBox && hasArea(*mediaBox) ? *mediaBox : kDefaultMediaBox;
    result.cropBox = boxInside(result.mediaBox, inherited(page, "CropBox"), result.mediaBox);
    result.bleedBox = boxInside(result.mediaBox, page["BleedBox"], result.cropBox);
    result.trimBox = boxInside(result.mediaBox, page["TrimBox"], result.cropBox);
    result.artBox = boxInside(result.mediaBox, page["ArtBox"], result.cropBox);
    return result;
}

/// Walks the tree depth first.
class PageTreeReader {
public:
    void visit(const PDFObject& node, std::size_t depth)
    {
        if (!node.isDictionary() || depth > kPDFLimits.pageTreeDepth || isFull())
            return;
        if (const auto id = node.id(); id.isIndirect() && !_visited.insert(id).second)
            return;
        const PDFObject kids = node["Kids"];
        if (!kids.isArray()) {
            _pages.push_back(propertiesOf(node));
            return;
        }
        for (std::size_t index = 0; index < kids.size() && !isFull(); ++index)
            visit(kids.at(index), depth + 1);
    }

    std::vector<PDFPageProperties> takePages() { return std::move(_pages); }

private:
    bool isFull() const { return _pages.size() >= kPDFLimits.pages; }

    std::set<PDFObjectID> _visited;
    std::vector<PDFPageProperties> _pages;
};

} // namespace

std::vector<PDFPageProperties> readPageTree(const PDFObject& root)
{
    PageTreeReader reader;
    reader.visit(root, 0);
    return reader.takePages();
}
