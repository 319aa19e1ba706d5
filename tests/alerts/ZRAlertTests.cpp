#include "AlertTestSupport.h"
#include "Foundation/testing/MainBundleFolder.h"
#include "Foundation/testing/NSLogCapture.h"
#include "support/TemporaryFolder.h"

#include <KorvidAppKit/ZRAlert.h>

#include <AppKit/NSApplication.h>
#include <Foundation/NSBoxedString.h>

namespace {

/// What the alert on top shows: its texts, then its buttons from the first on.
std::string shown()
{
    std::string text = textOf("alertMessage") + "|" + textOf("alertInformativeText") + "|";
    for (int i = 0; alertButton(i); ++i)
        text += "[" + alertButton(i)->text().toStdString() + "]";
    return text;
}

/// Presses a button of the alert that appears while it exists, and remembers what it showed.
class User {
public:
    explicit User(int button)
    {
        NSApplication::sharedApplication(); // without which Qt has no timers
        QTimer::singleShot(0, &_context, [this, button] {
            saw = shown();
            pressAlertButton(button);
        });
    }

    std::string saw;

private:
    const QObject _context;
};

/// A callback that notes its calls, as long as the alert is no longer shown.
struct Callback {
    std::vector<NSInteger> calls;

    ZRAlertCompletion function()
    {
        return [this](NSInteger index) { calls.push_back(shownAlert() ? -100 : index); };
    }
};

using Calls = std::vector<NSInteger>;

TEST(ZRRunAlertPanel, ReturnsTheResponseAsItIs)
{
    for (int button = 0; button < 3; ++button) {
        const User user(button);
        EXPECT_EQ(ZRRunAlertPanel("Title", "Message", "One", "Two", "Three"), 1000 + button);
        EXPECT_EQ(user.saw, "Title|Message|[One][Two][Three]");
    }
}

TEST(ZRRunAlertPanel, ANullDefaultTitleMakesTheAlternateOneTheFirst)
{
    const User user(0);
    EXPECT_EQ(ZRRunAlertPanel("Title", "Message", nullptr, "Two", "Three"), 1000);
    EXPECT_EQ(user.saw, "Title|Message|[Two][Three]");
}

TEST(ZRRunAlertPanel, WithoutTitlesThereIsOneButton)
{
    const User user(0);
    EXPECT_EQ(ZRRunAlertPanel(nullptr, nullptr, nullptr, nullptr, nullptr), 1000);
    EXPECT_EQ(user.saw, "||[OK]");
}

TEST(ZRRunAlertPanel, TheMessageIsFormatted)
{
    const User user(0);
    ZRRunAlertPanel("100 %d", "%@ and %d more, %.1f %%", "OK %@", nullptr, nullptr, box("Ann"), 3, 12.25);
    EXPECT_EQ(user.saw, "100 %d|Ann and 3 more, 12.2 %|[OK %@]");
}

TEST(ZRRunAlertPanel, AHostileFormatReadsAndWritesNothing)
{
    struct {
        const char* format;
        const char* message;
    } const cases[] = {
        {"%s%s%@%d", "(missing)(missing)(missing)(missing)"},
        {"%n%hhn%5$n", "%n%hhn%5$n"},
        {"%1000000$s", "(missing)"},
        {"%*s|%.*d", "(missing)|(missing)"},
        {"%", "%"},
        {"%99999999999d", "(missing)"},
    };
    for (const auto& one : cases) {
        const User user(0);
        ZRRunAlertPanel("T", one.format, "OK", nullptr, nullptr);
        EXPECT_EQ(user.saw, "T|" + std::string(one.message) + "|[OK]");
    }
    // A number is neither a string's nor an object's address, and an address no string.
    const User user(0);
    int target = 7;
    ZRRunAlertPanel("T", "%s %@ %n %d", "OK", nullptr, nullptr, 0x41414141, 1.5, &target);
    EXPECT_EQ(user.saw, "T|1094795585 1.5 %n (mismatch)|[OK]");
    EXPECT_EQ(target, 7);
}

TEST(ZRAlert, ShowsOKAndReturnsWhenItIsPressed)
{
    const User user(0);
    ZRAlert("Title", "100 %d");
    EXPECT_EQ(user.saw, "Title|100 %d|[OK]");
}

TEST(ZRAlert, OKIsTheMainBundlesTranslation)
{
    const TemporaryFolder folder;
    folder.write("en.lproj/Localizable.strings", "\"OK\" = \"Gut\";\n");
    const MainBundleFolder bundle(NSString(folder.path().string()));
    const User user(0);
    ZRAlert("Title", nullptr);
    EXPECT_EQ(user.saw, "Title||[Gut]");
}

TEST(ZRAlertBlock, OfFourTitlesThreeAreShown)
{
    Callback callback;
    const User user(2);
    ZRAlertBlock("Title", "Message", {"One", "Two", "Three", "Four"}, callback.function());
    EXPECT_EQ(user.saw, "Title|Message|[One][Two][Three]");
    EXPECT_EQ(callback.calls, Calls{2});
}

TEST(ZRAlertBlock, CallsBackWithTheNumberOfTheButton)
{
    for (int button = 0; button < 3; ++button) {
        Callback callback;
        const User user(button);
        ZRAlertBlock("Title", nullptr, {"One", "Two", "Three"}, callback.function());
        EXPECT_EQ(callback.calls, Calls{button});
    }
}

TEST(ZRAlertBlock, OneAndTwoTitles)
{
    Callback callback;
    const User one(0);
    ZRAlertBlock("Title", nullptr, {"One"}, callback.function());
    EXPECT_EQ(one.saw, "Title||[One]");
    const User two(1);
    ZRAlertBlock("Title", nullptr, {"One", "Two"}, callback.function());
    EXPECT_EQ(two.saw, "Title||[One][Two]");
    EXPECT_EQ(callback.calls, (Calls{0, 1}));
}

TEST(ZRAlertBlock, ANullTitleIsLeftOut)
{
    Callback callback;
    const User user(1);
    ZRAlertBlock("Title", nullptr, {"One", nullptr, "Three", "Four"}, callback.function());
    EXPECT_EQ(user.saw, "Title||[One][Three]");
    EXPECT_EQ(callback.calls, Calls{1});
}

TEST(ZRAlertBlock, AnAlertThatTheProgramEndsCountsAsTheFirstButton)
{
    Callback callback;
    const QObject context;
    NSApplication::sharedApplication();
    QTimer::singleShot(0, &context, [] { NSApp->abortModal(); });
    ZRAlertBlock("Title", nullptr, {"One", "Two"}, callback.function());
    EXPECT_EQ(callback.calls, Calls{0});
}

TEST(ZRAlertBlock, ACallbackMayShowAnotherAlert)
{
    Callback inner;
    std::unique_ptr<User> second;
    const User first(1);
    ZRAlertBlock("Title", nullptr, {"One", "Two"}, [&](NSInteger index) {
        EXPECT_EQ(index, 1);
        second = std::make_unique<User>(0);
        ZRAlertBlock("Next", nullptr, {"Only"}, inner.function());
    });
    EXPECT_EQ(second->saw, "Next||[Only]");
    EXPECT_EQ(inner.calls, Calls{0});
}

TEST(ZRAlertBlockWithConf, AnEmptyListShowsOKAndCallsBackWith0)
{
    Callback callback;
    const User user(0);
    ZRAlertBlockWithConf("Title", "Message", {}, callback.function(), nullptr);
    EXPECT_EQ(user.saw, "Title|Message|[OK]");
    EXPECT_EQ(callback.calls, Calls{0});
}

TEST(ZRAlertBlockWithConf, ShowsTheAccessoryViewAndNeedsNoCallback)
{
    const auto view = make<NSView>(NSMakeRect(0, 0, 40, 20));
    const auto configuration = make<NSMutableDictionary>();
    configuration->setObject(view, "accessoryView");
    configuration->setObject(box("red"), "colour");
    bool wasShown = false;
    const QObject context;
    NSApplication::sharedApplication();
    QTimer::singleShot(0, &context, [&] {
        wasShown = view->window() && view->window()->isVisible();
        pressAlertButton(0);
    });
    ZRAlertBlockWithConf("Title", nullptr, {"One"}, nullptr, configuration);
    EXPECT_TRUE(wasShown);
    EXPECT_EQ(view->window(), nullptr);
}

TEST(ZRAlertBlockWithConf, AnAccessoryThatIsNoViewIsIgnored)
{
    const auto configuration = make<NSMutableDictionary>();
    configuration->setObject(box("view"), "accessoryView");
    const User user(0);
    ZRAlertBlockWithConf("Title", nullptr, {"One"}, nullptr, configuration);
    EXPECT_EQ(user.saw, "Title||[One]");
}

TEST(ZRAlertDelegate, LogsOnceAfterTheAnswer)
{
    const NSLogCapture log;
    std::size_t before = 1;
    const QObject context;
    NSApplication::sharedApplication();
    QTimer::singleShot(0, &context, [&] {
        before = log.messages().size();
        EXPECT_EQ(shown(), "Title|Message|[One][Two]");
        pressAlertButton(1);
    });
    ZRAlertDelegate("Title", "Message", {"One", "Two"});
    EXPECT_EQ(before, 0U);
    EXPECT_EQ(log.messages(), std::vector<std::string>{"ZRAlertDelegate() not fully supported on Mac."});
}

} // namespace
