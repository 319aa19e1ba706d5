#include "NSUserDefaultsTest.h"

#include "Foundation/testing/NSLogCapture.h"

#include <limits>
#include <sys/stat.h>

TEST_F(NSUserDefaultsTest, KeyNeverSetAnswersNeutralValues)
{
    EXPECT_FALSE(defaults().objectForKey("key"));
    EXPECT_TRUE(defaults().stringForKey("key").isNull());
    EXPECT_EQ(defaults().doubleForKey("key"), 0);
    EXPECT_EQ(defaults().integerForKey("key"), 0);
    EXPECT_FALSE(defaults().boolForKey("key"));
    EXPECT_FALSE(defaults().dataForKey("key"));
    EXPECT_FALSE(defaults().arrayForKey("key"));
    EXPECT_FALSE(defaults().dictionaryForKey("key"));
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(NSUserDefaultsTest, ValuesComeBackInThisProcessAndAfterwards)
{
    defaults().setDouble(0.25, "hue");
    defaults().setInteger(-3, "count");
    defaults().setBool(true, "flag");
    defaults().setObject("text", "name");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(defaults().doubleForKey("hue"), 0.25);
        EXPECT_EQ(defaults().integerForKey("count"), -3);
        EXPECT_TRUE(defaults().boolForKey("flag"));
        EXPECT_EQ(defaults().stringForKey("name"), NSString("text"));
        startAnew();
    }
}

TEST_F(NSUserDefaultsTest, NullRemoves)
{
    defaults().setInteger(1, "a");
    defaults().setInteger(2, "b");
    defaults().setInteger(3, "c");
    defaults().setObject(nullptr, "a");
    defaults().removeObjectForKey("b");
    defaults().setObject(NSString(), "c");
    defaults().removeObjectForKey("never set");
    for (int i = 0; i < 2; ++i) {
        for (const char* key : {"a", "b", "c"})
            EXPECT_FALSE(defaults().objectForKey(key)) << key;
        startAnew();
    }
}

TEST_F(NSUserDefaultsTest, NullKeysAreIgnored)
{
    defaults().setInteger(1, nullptr);
    defaults().removeObjectForKey(nullptr);
    EXPECT_FALSE(defaults().objectForKey(nullptr));
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(NSUserDefaultsTest, GettersConvertTextsAndNumbers)
{
    defaults().setObject(" 12.5 apples", "text");
    EXPECT_EQ(defaults().doubleForKey("text"), 12.5);
    EXPECT_EQ(defaults().integerForKey("text"), 12);
    EXPECT_TRUE(defaults().boolForKey("text"));
    defaults().setDouble(-2.75, "real");
    EXPECT_EQ(defaults().integerForKey("real"), -2);
    EXPECT_EQ(defaults().stringForKey("real"), NSString("-2.75"));
    EXPECT_TRUE(defaults().boolForKey("real"));
    defaults().setDouble(1e300, "huge");
    EXPECT_EQ(defaults().integerForKey("huge"), std::numeric_limits<NSInteger>::max());
    defaults().setObject(make<NSArray>().get(), "array");
    EXPECT_EQ(defaults().doubleForKey("array"), 0);
    EXPECT_TRUE(defaults().stringForKey("array").isNull());
    EXPECT_FALSE(defaults().dataForKey("array"));
    EXPECT_FALSE(defaults().dictionaryForKey("array"));
    EXPECT_TRUE(defaults().arrayForKey("array"));
}

TEST_F(NSUserDefaultsTest, TextsThatSayYesAreTrue)
{
    for (const char* yes : {"YES", "yes", "y", "True", "t", "1", "0009", " \t+7", "-1"}) {
        defaults().setObject(yes, "key");
        EXPECT_TRUE(defaults().boolForKey("key")) << yes;
    }
    for (const char* no : {"NO", "", "0", "-0", "000", "on", "x1"}) {
        defaults().setObject(no, "key");
        EXPECT_FALSE(defaults().boolForKey("key")) << no;
    }
}

TEST_F(NSUserDefaultsTest, RegisteredValuesShowWhereNothingIsStored)
{
    NSDictionary::Map values;
    values.emplace("a", NSNumber::numberWithInteger(1));
    values.emplace("b", NSNumber::numberWithInteger(2));
    defaults().registerDefaults(make<NSDictionary>(values).get());
    defaults().registerDefaults(nullptr);
    defaults().setInteger(5, "b");
    EXPECT_EQ(defaults().integerForKey("a"), 1);
    EXPECT_EQ(defaults().integerForKey("b"), 5);
    defaults().removeObjectForKey("b");
    EXPECT_EQ(defaults().integerForKey("b"), 2);
    EXPECT_EQ(contentOf(path).find("<integer>"), std::string::npos);
    startAnew();
    EXPECT_FALSE(defaults().objectForKey("a"));
}

TEST_F(NSUserDefaultsTest, StoresACopyOfWhatCanChange)
{
    const auto inner = make<NSMutableDictionary>();
    inner->setObject(box("before").get(), "key");
    const auto outer = make<NSArray>(std::vector<RetainPtr<NSObject>>{inner});
    defaults().setObject(outer.get(), "value");
    inner->setObject(box("after").get(), "key");
    const auto stored = defaults().arrayForKey("value");
    ASSERT_TRUE(stored);
    const auto* dictionary = dynamic_cast<NSDictionary*>(stored->firstObject());
    EXPECT_EQ(dictionary->stringForKey("key"), NSString("before"));
}

TEST_F(NSUserDefaultsTest, ValuesThatAreNoPropertyListAreLoggedAndNotStored)
{
    defaults().setInteger(1, "key");
    const NSLogCapture log;
    defaults().setObject(NSNull::null(), "key");
    defaults().setObject(make<NSArray>(std::vector<RetainPtr<NSObject>>{NSNull::null()}).get(), "key");
    EXPECT_EQ(log.messages().size(), 2U);
    EXPECT_EQ(defaults().integerForKey("key"), 1);
}

TEST_F(NSUserDefaultsTest, EndlessNestingIsRefused)
{
    RetainPtr<NSObject> value = make<NSArray>();
    for (int i = 0; i < 5000; ++i)
        value = make<NSArray>(std::vector<RetainPtr<NSObject>>{value});
    const NSLogCapture log;
    defaults().setObject(value.get(), "deep");
    EXPECT_EQ(log.messages().size(), 1U);
    EXPECT_FALSE(defaults().objectForKey("deep"));

    value = make<NSArray>();
    for (int i = 0; i < 510; ++i)
        value = make<NSArray>(std::vector<RetainPtr<NSObject>>{value});
    defaults().setObject(value.get(), "just so deep");
    startAnew();
    EXPECT_TRUE(defaults().objectForKey("just so deep"));
}

TEST_F(NSUserDefaultsTest, DamagedFileIsLoggedKeptAsideAndCountsAsEmpty)
{
    const std::string damaged = "<plist version=\"1.0\"><dict><key>half";
    folder.write("app.plist", damaged);
    const NSLogCapture log;
    EXPECT_FALSE(defaults().objectForKey("half"));
    EXPECT_EQ(log.messages(),
        std::vector<std::string>{"User defaults: " + path + " is damaged and counts as empty; it is kept as "
            + path + ".damaged"});
    defaults().setInteger(1, "key");
    EXPECT_EQ(contentOf(path + ".damaged"), damaged);

    folder.write("app.plist", "damaged again");
    startAnew();
    defaults().setInteger(2, "key");
    EXPECT_EQ(contentOf(path + ".damaged"), damaged);
    EXPECT_EQ(contentOf(path + ".damaged-2"), "damaged again");
    startAnew();
    EXPECT_EQ(defaults().integerForKey("key"), 2);
    EXPECT_EQ(log.messages().size(), 2U);
}

TEST_F(NSUserDefaultsTest, FilesOfAnotherKindCountAsDamaged)
{
    int number = 0;
    for (const char* other : {"binary \xFF\xFE", "<plist version=\"1.0\"><array/></plist>", "<html/>",
             "<plist version=\"1.0\"><dict><key>a</key></dict></plist>",
             "<plist version=\"1.0\"><dict/></plist><more/>"}) {
        folder.write("app.plist", other);
        startAnew();
        const NSLogCapture log;
        defaults().setInteger(++number, "key");
        EXPECT_EQ(log.messages().size(), 1U) << other;
        EXPECT_EQ(defaults().integerForKey("key"), number);
    }
    EXPECT_EQ(otherFiles(folder).size(), 5U);
}

TEST_F(NSUserDefaultsTest, EmptyFileIsNotDamaged)
{
    folder.write("app.plist", "");
    const NSLogCapture log;
    defaults().setInteger(1, "key");
    EXPECT_TRUE(log.messages().empty());
    EXPECT_EQ(otherFiles(folder), std::vector<std::string>());
}

TEST_F(NSUserDefaultsTest, WithoutAFolderToWriteInValuesAreKeptInMemoryAndThatIsLoggedOnce)
{
    // A file where the folder should be: not even root can write there.
    const std::string obstacle = folder.write("obstacle", "");
    file.reset();
    file.emplace(NSString(obstacle + "/sub/app.plist"));
    const NSLogCapture log;
    defaults().setInteger(1, "a");
    defaults().setInteger(2, "b");
    EXPECT_EQ(defaults().integerForKey("a"), 1);
    EXPECT_EQ(defaults().integerForKey("b"), 2);
    defaults().removeObjectForKey("a");
    EXPECT_FALSE(defaults().objectForKey("a"));
    EXPECT_FALSE(defaults().synchronize());
    ASSERT_EQ(log.messages().size(), 1U);
    EXPECT_EQ(log.messages()[0],
        "User defaults: " + obstacle
            + "/sub/app.plist cannot be written (Not a directory); changes are kept in memory");

    // Once there is a folder, the next change takes all that waited along.
    std::filesystem::remove(obstacle);
    defaults().setInteger(3, "c");
    EXPECT_TRUE(defaults().synchronize());
    file.reset();
    file.emplace(NSString(obstacle + "/sub/app.plist"));
    EXPECT_EQ(defaults().integerForKey("b"), 2);
    EXPECT_EQ(defaults().integerForKey("c"), 3);
    EXPECT_FALSE(defaults().objectForKey("a"));
}

TEST_F(NSUserDefaultsTest, WhatCannotBeReadIsNeverWrittenOver)
{
    std::filesystem::create_directory(path);
    const NSLogCapture log;
    defaults().setInteger(1, "key");
    EXPECT_EQ(defaults().integerForKey("key"), 1);
    EXPECT_EQ(log.messages().size(), 1U);
    EXPECT_TRUE(std::filesystem::is_directory(path));
    EXPECT_EQ(otherFiles(folder), std::vector<std::string>());
}

TEST_F(NSUserDefaultsTest, LinkToAFileElsewhereStaysALink)
{
    const std::string target = folder.file("elsewhere/real.plist");
    std::filesystem::create_directory(folder.file("elsewhere"));
    std::filesystem::create_symlink(target, path);
    startAnew();
    defaults().setInteger(1, "key");
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_TRUE(std::filesystem::is_regular_file(target));
    startAnew();
    EXPECT_EQ(defaults().integerForKey("key"), 1);
}

TEST_F(NSUserDefaultsTest, OthersMayNotReadTheFile)
{
    defaults().setInteger(1, "key");
    struct stat status { };
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST(NSUserDefaults, StandardFileIsInTheConfigurationFolder)
{
    {
        const UserDefaultsFile forgetTheOldOne{NSString()};
    }
    NSUserDefaults::standardUserDefaults()->setInteger(1, "NSUserDefaultsTests");
    const std::string path = std::string(getenv("XDG_CONFIG_HOME")) + "/FoundationTests.plist";
    EXPECT_NE(contentOf(path).find("<key>NSUserDefaultsTests</key>"), std::string::npos);
    EXPECT_EQ(NSUserDefaults::standardUserDefaults(), NSUserDefaults::standardUserDefaults());
}
