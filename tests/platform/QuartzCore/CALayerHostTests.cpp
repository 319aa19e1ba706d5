#include "QuartzCore/LayerHost.h"

#include "support/Canvas.h"
#include "support/Describe.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

/// A host that records what it has to composite.
class RecordingHost final : public CALayerHost {
public:
    explicit RecordingHost(RetainPtr<CALayer> root)
        : _root(std::move(root))
    {
        attach(*_root);
    }
    RecordingHost(const RecordingHost&) = delete;
    RecordingHost& operator=(const RecordingHost&) = delete;
    ~RecordingHost()
    {
        if (_root)
            detach(*_root);
    }
    void layersDidChange(CGRect rect) override { changes.push_back(describe(rect)); }
    void layerDidLeave() override
    {
        changes.emplace_back("left");
        _root = nullptr;
    }
    void useScale(CGFloat scale) { setContentsScale(*_root, scale); }

    std::vector<std::string> changes;

private:
    RetainPtr<CALayer> _root;
};

using Changes = std::vector<std::string>;

} // namespace

TEST(CALayerHost, IsNotifiedOfChangesInTheCoordinatesOfTheRoot)
{
    const auto root = make<CALayer>();
    root->setBounds(CGRectMake(10, 20, 100, 100));
    RecordingHost host(root);
    const auto child = make<CALayer>();
    child->setBounds(CGRectMake(1, 2, 4, 6));
    child->setPosition(CGPointMake(50, 60));
    struct Case {
        const char* name;
        std::function<void()> change;
        Changes expected;
    };
    const auto image = adopt(CGBitmapContextCreateImage(Canvas(1, 1).context()));
    const Case cases[] = {
        {"root", [&] { root->setNeedsDisplay(); }, {"10 20 100 100"}},
        {"added", [&] { root->addSublayer(child); }, {"48 57 4 6"}},
        {"marked", [&] { child->setNeedsDisplay(); }, {"48 57 4 6"}},
        {"contents", [&] { child->setContents(image); }, {"48 57 4 6"}},
        {"same contents", [&] { child->setContents(image); }, {}},
        {"moved", [&] { child->setPosition(CGPointMake(40, 60)); }, {"48 57 4 6", "38 57 4 6"}},
        {"not moved", [&] { child->setPosition(CGPointMake(40, 60)); }, {}},
        {"resized", [&] { child->setBounds(CGRectMake(0, 0, 2, 2)); }, {"38 57 4 6", "39 59 2 2"}},
        {"hidden", [&] { child->setHidden(true); }, {"39 59 2 2"}},
        {"hidden again", [&] { child->setHidden(true); }, {}},
        {"marked while hidden", [&] { child->setNeedsDisplay(); }, {}},
        {"shown", [&] { child->setHidden(false); }, {"39 59 2 2"}},
        {"removed", [&] { child->removeFromSuperlayer(); }, {"39 59 2 2"}},
        {"marked elsewhere", [&] { child->setNeedsDisplay(); }, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        host.changes.clear();
        c.change();
        EXPECT_EQ(host.changes, c.expected);
    }
}

TEST(CALayerHost, LosesALayerThatGoesElsewhere)
{
    const auto layer = make<CALayer>();
    const auto superlayer = make<CALayer>();
    RecordingHost first(layer);
    superlayer->addSublayer(layer);
    EXPECT_EQ(first.changes.back(), "left");
    RecordingHost second(layer);
    EXPECT_EQ(layer->superlayer(), nullptr);
    EXPECT_TRUE(superlayer->sublayers().empty());
    RecordingHost third(layer);
    EXPECT_EQ(second.changes.back(), "left");
    layer->setNeedsDisplay();
    EXPECT_EQ(third.changes, Changes{"0 0 0 0"});
}

TEST(CALayerHost, SetsTheScaleOfLayersWithoutOneOfTheirOwn)
{
    const auto root = make<CALayer>();
    root->setBounds(CGRectMake(0, 0, 2, 1));
    root->setNeedsDisplay();
    const auto own = make<CALayer>();
    own->setContentsScale(1);
    const auto leaf = make<CALayer>();
    root->addSublayer(own);
    own->addSublayer(leaf);
    RecordingHost host(root);
    host.useScale(2);
    EXPECT_EQ(root->contentsScale(), 2);
    EXPECT_EQ(own->contentsScale(), 1);
    EXPECT_EQ(leaf->contentsScale(), 2);
    root->displayIfNeeded();
    host.useScale(2);
    EXPECT_FALSE(root->needsDisplay());
    host.useScale(1.5);
    EXPECT_TRUE(root->needsDisplay());
}
