#include "ArchiveFuzz.h"

#include "Require.h"

#include <AppKit/AppKit.h>
#include <Foundation/Foundation.h>
#include <KorvidAppKit/KorvidAppKit.h>

namespace {

RetainPtr<NSData> archived(const NSObject& object)
{
    RetainPtr<NSError> error;
    auto data = NSKeyedArchiver::archivedDataWithRootObject(&object, true, &error);
    require(!data == (error != nullptr));
    return data;
}

/// What the archive holds if it is of the class; null comes with an error.
template <class T> RetainPtr<T> unarchived(const NSData& archive)
{
    RetainPtr<NSError> error;
    auto object = NSKeyedUnarchiver::unarchivedObjectOfClass<T>(&archive, &error);
    require(!object == (error != nullptr));
    return object;
}

/// Links between views that hold for any tree.
void checkTree(const NSView& view)
{
    require(view.frame().size.width >= 0 && view.frame().size.height >= 0);
    for (const auto& subview : view.subviews()) {
        require(subview->superview() == &view);
        checkTree(*subview);
    }
}

void draw(NSView& view)
{
    constexpr NSInteger kSide = 8;
    const auto picture = NSBitmapImageRep::initWithBitmapDataPlanes(
        nullptr, kSide, kSide, 8, 4, true, false, NSCalibratedRGBColorSpace, 0, 0);
    const auto context = NSGraphicsContext::graphicsContextWithBitmapImageRep(picture);
    view.displayRectIgnoringOpacity(view.bounds(), context);
}

} // namespace

void fuzzArchive(const std::uint8_t* data, std::size_t size)
{
    const auto archive = NSData::dataWithBytes(data, size);
    const auto object = unarchived<NSObject>(*archive);
    const auto view = unarchived<NSView>(*archive);
    require(object || !view);
    require(!object || unarchived<NSColor>(*archive) || !dynamic_cast<NSColor*>(object.get()));
    if (!object)
        return;
    require((view != nullptr) == (dynamic_cast<NSView*>(object.get()) != nullptr));
    if (const auto written = archived(*object)) {
        const auto again = unarchived<NSObject>(*written);
        require(again != nullptr);
        require(archived(*again)->isEqual(written));
    }
    if (view) {
        checkTree(*view);
        draw(*view);
    }
}

std::vector<std::string> archiveSeeds()
{
    const NSRect frame = NSMakeRect(0, 0, 8, 8);
    const auto root = make<NSView>(frame);
    root->addSubview(make<ZRSwitchControl>(frame));
    root->addSubview(make<ZRCapsuleView>(frame));
    root->addSubview(NSTextField::labelWithString("Label"));
    root->subviews()[0]->addSubview(make<ZRGradientView>(NSMakeRect(1, 2, 3, 4)));
    const auto name = box("name");
    const auto values = make<NSArray>(std::vector<RetainPtr<NSObject>>{name, name,
        NSNumber::numberWithDouble(0.5), NSNull::null(), NSDate::dateWithTimeIntervalSinceReferenceDate(1.5),
        NSData::dataWithBytes("ab", 2), make<NSDictionary>(NSDictionary::Map{{"key", name}})});
    std::vector<std::string> seeds;
    for (const RetainPtr<NSObject>& object :
        std::vector<RetainPtr<NSObject>>{root, values, make<ZR2DColorPicker>(frame), make<ZRQRView>(frame),
            make<ZRPDFView>(frame), NSColor::colorWithSRGBRed(0.1, 0.2, 0.3, 0.4), NSColor::labelColor()}) {
        const auto data = archived(*object);
        seeds.emplace_back(static_cast<const char*>(data->bytes()), data->length());
    }
    return seeds;
}
