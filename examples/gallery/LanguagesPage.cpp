// Strings in the user's language: keys beside what they stand for, and a player that is labelled with them.

#include "Page.h"
#include "Text.h"

#include <AppKit/NSButton.h>
#include <Foundation/NSBundle.h>
#include <Foundation/NSFormat.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <cmath>
#include <iterator>

namespace {

NSString localized(const NSString& key)
{
    return NSBundle::mainBundle()->localizedStringForKey(key, nullptr, nullptr);
}

constexpr const char* kTrackKey = "Track %1$d of %2$d";
constexpr const char* kPieceKey = "%1$@ by %2$@";

/// Keys on the left, and on the right their strings.
class KeysCard : public NSView {
public:
    void drawRect(NSRect) override
    {
        constexpr const char* kKeys[]{"English", "Play", "Stop", "Next", kTrackKey, kPieceKey};
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "Keys, and their strings in your language");
        NSRect room = NSInsetRect(aboveCaption(bounds()), 12, 0);
        room.size.height -= 8;
        const CGFloat half = std::round(room.size.width / 2);
        const auto cells = galleryGrid(1, std::size(kKeys), 0)(room);
        for (std::size_t i = 0; i < std::size(kKeys); ++i) {
            const CGFloat y = std::round(NSMidY(cells[i]) - 5);
            const auto drawCell = [&](const NSString& text, CGFloat x, const TextStyle& style) {
                drawLabel(context, shortenedText(text, style, half - 8), {x, y}, style);
            };
            drawCell(kKeys[i], NSMinX(room), kCodeStringText);
            drawCell(localized(kKeys[i]), NSMinX(room) + half, kCardText);
            CGContextSetFillColorWithColor(context, galleryCGColor("zel-hairline-solid"));
            CGContextFillRect(context, NSMakeRect(NSMinX(room), NSMinY(cells[i]), room.size.width, 1));
        }
    }

protected:
    ~KeysCard() override = default;
};

/// Buttons with localised titles, and texts from localised formats.
class PlayerCard : public NSView {
public:
    PlayerCard()
        : _play(NSButton::buttonWithTitle(localized("Play"), this, selector<&PlayerCard::playOrStop>))
        , _next(NSButton::buttonWithTitle(localized("Next"), this, selector<&PlayerCard::showNext>))
    {
        addSubview(_play);
        addSubview(_next);
    }

    void playOrStop()
    {
        _isPlaying = !_isPlaying;
        _play->setTitle(localized(_isPlaying ? "Stop" : "Play"));
    }
    void showNext()
    {
        _track = (_track + 1) % std::size(kPieces);
        setNeedsDisplay(true);
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        constexpr CGFloat kWidth = 120, kHeight = 28, kGap = 12;
        const NSRect room = aboveCaption(bounds());
        const CGFloat left = std::round(NSMidX(room) - kWidth - kGap / 2);
        _play->setFrame(NSMakeRect(left, NSMinY(room) + kGap, kWidth, kHeight));
        _next->setFrame(NSMakeRect(left + kWidth + kGap, NSMinY(room) + kGap, kWidth, kHeight));
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "Titles and formats: press the buttons");
        const auto& [title, composer] = kPieces[_track];
        const NSString piece =
            NSString::stringWithFormat(localized(kPieceKey), NSString(title), NSString(composer));
        const NSString track = NSString::stringWithFormat(
            localized(kTrackKey), static_cast<int>(_track + 1), static_cast<int>(std::size(kPieces)));
        const NSPoint middle{NSMidX(bounds()), std::round((NSMaxY(_play->frame()) + NSMaxY(bounds())) / 2)};
        drawLabel(context, piece, {middle.x, middle.y + 6}, kListTitleText, LabelPlace::CentredOnPoint);
        drawLabel(context, track, {middle.x, middle.y - 18}, kCardText, LabelPlace::CentredOnPoint);
    }

protected:
    ~PlayerCard() override = default;

private:
    struct Piece {
        const char* title;
        const char* composer;
    };
    static constexpr Piece kPieces[]{
        {"Prelude", "J. S. Bach"}, {"Nocturne", "F. Chopin"}, {"Gymnopédie", "E. Satie"}};

    const RetainPtr<NSButton> _play, _next;
    std::size_t _track = 0;
    bool _isPlaying = false;
};

RetainPtr<NSView> makeLanguagesPage(const GalleryOptions&)
{
    return makeGalleryPage({make<KeysCard>(), make<PlayerCard>()}, galleryGrid(1, 2));
}

const GalleryPage languagesPage{"languages", 97, "Languages",
    "Strings in your language: English, German or French. To see another one, start the gallery with "
    "LC_ALL=de_DE.UTF-8 or LC_ALL=fr_FR.UTF-8.",
    makeLanguagesPage};

} // namespace
