#include "ArchiveSamples.h"

#include <algorithm>
#include <random>
#include <stdexcept>

namespace {

/// Refuses to be made from an archive.
class Refuser : public NSObject, public NSSecureCoding {
public:
    bool throws = false;

    void encodeWithCoder(NSCoder* coder) const override { coder->encodeBool(throws, "throws"); }
    static RetainPtr<NSObject> initWithCoder(NSCoder* coder)
    {
        if (coder->decodeBoolForKey("throws"))
            throw std::runtime_error("no");
        return nullptr;
    }
};

/// Reads its values under other types than they were written.
class Confused : public NSObject, public NSSecureCoding {
public:
    static inline std::string mistake;

    void encodeWithCoder(NSCoder* coder) const override
    {
        coder->encodeDouble(2.75, "number");
        coder->encodeString("text", "text");
        coder->encodeObject(nullptr, "null");
        coder->encodeInteger(7, nullptr);
        EXPECT_EQ(coder->decodeDoubleForKey("number"), 0); // a coder that encodes
        EXPECT_FALSE(coder->containsValueForKey("number"));
    }
    static RetainPtr<NSObject> initWithCoder(NSCoder* coder)
    {
        coder->encodeDouble(1, "number"); // a coder that decodes
        EXPECT_EQ(coder->decodeDoubleForKey("number"), 2.75);
        EXPECT_EQ(coder->decodeIntegerForKey("number"), 2);
        EXPECT_TRUE(coder->decodeBoolForKey("number"));
        EXPECT_EQ(coder->decodeDoubleForKey("missing"), 0);
        EXPECT_TRUE(coder->decodeStringForKey("missing").isNull());
        EXPECT_EQ(coder->decodeIntegerForKey(nullptr), 0);
        EXPECT_TRUE(coder->containsValueForKey("null"));
        EXPECT_FALSE(coder->containsValueForKey("missing"));
        EXPECT_FALSE(coder->decodeObjectOfClass<NSObject>("null"));
        if (mistake == "number as object") {
            EXPECT_FALSE(coder->decodeObjectOfClass<NSNumber>("number"));
        }
        if (mistake == "object as number") {
            EXPECT_EQ(coder->decodeDoubleForKey("text"), 0);
        }
        if (mistake == "other class") {
            EXPECT_FALSE(coder->decodeObjectOfClass<NSData>("text"));
        }
        return make<Confused>();
    }
};

const NSCodingClass<Refuser> refuserCoding("Refuser");
const NSCodingClass<Confused> confusedCoding("Confused");

} // namespace

TEST(NSKeyedUnarchiver, ReturnsOnlyTheRequestedClassOrOneDerivedFromIt)
{
    const auto special = archived(make<SpecialSample>());
    EXPECT_TRUE(unarchived<SpecialSample>(special));
    EXPECT_TRUE(unarchived<Sample>(special));
    EXPECT_TRUE(unarchived<NSObject>(special));
    EXPECT_FALSE(unarchived<SpecialSample>(archived(make<Sample>())));
    EXPECT_FALSE(unarchived<NSData>(archived(box("text"))));
    EXPECT_FALSE(unarchived<Sample>(archived(box("text"))));
}

TEST(NSKeyedUnarchiver, ObjectOfAnotherClassIsNeverMade)
{
    const auto unrelated = archived(make<Unrelated>());
    Unrelated::made = 0;
    EXPECT_FALSE(unarchived<Sample>(unrelated));
    EXPECT_EQ(Unrelated::made, 0);
    // Not even inside an object of an allowed class.
    const std::string nested = replaced(textOf(archived(sample())), "SpecialSample", "Unrelated");
    EXPECT_FALSE(unarchived<Sample>(dataOf(nested)));
    EXPECT_EQ(Unrelated::made, 0);
    EXPECT_TRUE(unarchived<Unrelated>(unrelated));
    EXPECT_EQ(Unrelated::made, 1);
}

TEST(NSKeyedUnarchiver, CollectionsHoldFoundationsValuesOnly)
{
    const auto list = archived(make<NSArray>(std::vector<RetainPtr<NSObject>>{make<Unrelated>()}));
    Unrelated::made = 0;
    EXPECT_FALSE(unarchived<NSArray>(list));
    NSDictionary::Map map;
    map.emplace("key", make<Unrelated>());
    EXPECT_FALSE(unarchived<NSDictionary>(archived(make<NSDictionary>(map))));
    EXPECT_EQ(Unrelated::made, 0);
}

TEST(NSKeyedUnarchiver, ObjectThatRefusesToBeMadeGivesNull)
{
    const auto refuser = make<Refuser>();
    EXPECT_FALSE(unarchived<Refuser>(archived(refuser)));
    refuser->throws = true;
    EXPECT_FALSE(unarchived<Refuser>(archived(refuser)));
}

TEST(NSKeyedUnarchiver, CoderReturnsNeutralValuesAndMismatchesMakeTheArchiveFail)
{
    const auto data = archived(make<Confused>());
    Confused::mistake.clear();
    EXPECT_TRUE(unarchived<Confused>(data));
    for (const char* mistake : {"number as object", "object as number", "other class"}) {
        Confused::mistake = mistake;
        EXPECT_FALSE(unarchived<Confused>(data)) << mistake;
    }
}

TEST(NSKeyedUnarchiver, ObjectsThatHoldThemselvesAreArchivedButNotMade)
{
    const auto a = make<Sample>();
    const auto b = make<Sample>();
    a->next = b;
    b->next = a;
    const auto data = archived(a);
    EXPECT_FALSE(unarchived<Sample>(data));
    b->next = nullptr;
}

TEST(NSKeyedUnarchiver, DeepNestingIsRefusedInBothDirections)
{
    const auto chain = [](int length) {
        RetainPtr<Sample> first;
        for (int i = 0; i < length; ++i) {
            auto link = make<Sample>();
            link->next = std::move(first);
            first = std::move(link);
        }
        return first;
    };
    EXPECT_TRUE(unarchived<Sample>(archived(chain(512))));
    RetainPtr<NSError> error;
    EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(chain(513).get(), true, &error));
    EXPECT_TRUE(error);
    EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(chain(20'000).get(), true));

    // References that go deeper than any archive of ours: object i holds object i + 1.
    const std::string text = textOf(archived(make<Sample>()));
    const auto objects = text.find("<array>") + 7;
    const auto record = text.substr(objects, text.find("</array>") - objects);
    std::string deep = text.substr(0, objects);
    for (int i = 0; i < 20'000; ++i)
        deep += "<dict><key>$class</key><string>Sample</string><key>$values</key><dict><key>next</key><dict>"
                "<key>$ref</key><integer>"
            + std::to_string(i + 1) + "</integer></dict></dict></dict>";
    deep += record + text.substr(text.find("</array>"));
    EXPECT_FALSE(unarchived<Sample>(dataOf(deep)));
}

TEST(NSKeyedUnarchiver, FormatOfApplesFoundationIsRefused)
{
    // What Apple's archiver writes for the string "text", as XML.
    const std::string apples =
        "<plist version=\"1.0\"><dict><key>$archiver</key><string>NSKeyedArchiver</string>"
        "<key>$objects</key><array><string>$null</string><string>text</string></array>"
        "<key>$top</key><dict><key>root</key><dict><key>CF$UID</key><integer>1</integer>"
        "</dict></dict><key>$version</key><integer>100000</integer></dict></plist>";
    RetainPtr<NSError> error;
    EXPECT_FALSE(NSKeyedUnarchiver::unarchivedObjectOfClass<NSBoxedString>(dataOf(apples).get(), &error));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), NSCoderReadCorruptError);
}

TEST(NSKeyedUnarchiver, NestedXMLAndTooManyBytesAreRefused)
{
    std::string bomb = "<plist version=\"1.0\">";
    for (int i = 0; i < 200'000; ++i)
        bomb += "<array>";
    EXPECT_FALSE(unarchived<Sample>(dataOf(bomb)));
    EXPECT_FALSE(unarchived<Sample>(dataOf(std::string((64U << 20) + 1, ' '))));
}

TEST(NSKeyedUnarchiver, EntitiesThatExplodeAreRefused)
{
    std::string bomb = "<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY a0 \"xxxxxxxxxx\">";
    for (int i = 1; i < 12; ++i) {
        bomb += "<!ENTITY a" + std::to_string(i) + " \"";
        for (int k = 0; k < 10; ++k)
            bomb += "&a" + std::to_string(i - 1) + ";";
        bomb += "\">";
    }
    bomb += "]><plist version=\"1.0\"><string>&a11;</string></plist>";
    EXPECT_FALSE(unarchived<NSBoxedString>(dataOf(bomb)));
}

TEST(NSKeyedUnarchiver, ReferencesThatDoNotFitGiveNull)
{
    const std::string text = textOf(archived(make<NSArray>(std::vector<RetainPtr<NSObject>>{box("x")})));
    ASSERT_TRUE(unarchived<NSArray>(dataOf(text)));
    for (const char* index : {"2", "-1", "9223372036854775807", "-9223372036854775808", "1.5", "0"}) {
        const auto broken =
            replaced(text, "<integer>1</integer>", std::string("<integer>") + index + "</integer>");
        EXPECT_FALSE(unarchived<NSArray>(dataOf(broken))) << index;
    }
    EXPECT_FALSE(unarchived<NSArray>(dataOf(replaced(text, "<integer>1</integer>", "<real>1</real>"))));
    EXPECT_FALSE(unarchived<NSArray>(dataOf(replaced(text, "<integer>1</integer>", "<true/>"))));
    EXPECT_FALSE(unarchived<NSArray>(dataOf(replaced(text, "$objects", "$objets"))));
    EXPECT_FALSE(unarchived<NSArray>(dataOf(replaced(text, "$root", "$rot"))));
    EXPECT_FALSE(unarchived<NSArray>(dataOf(replaced(text, "$version", "$versio"))));
    EXPECT_FALSE(unarchived<NSArray>(dataOf(replaced(text, "$ref", "$re"))));
}

TEST(NSKeyedUnarchiver, TenThousandDamagedArchivesNeverCrashAndGiveNullOrTheRightClass)
{
    const std::string whole = textOf(archived(sample()));
    std::mt19937 random(20260); // fixed: a failure can be repeated
    const auto below = [&](std::size_t n) { return static_cast<std::size_t>(random() % n); };
    int refused = 0;
    int survived = 0;
    Unrelated::made = 0;
    for (int round = 0; round < 10'000; ++round) {
        std::string text = whole;
        for (std::size_t changes = 1 + below(3); changes > 0 && !text.empty(); --changes) {
            const std::size_t at = below(text.size());
            const std::size_t length = std::min(below(40), text.size() - at);
            switch (below(7)) {
            case 0:
                text[at] = static_cast<char>(random());
                break;
            case 1:
                text[at] = static_cast<char>(text[at] ^ (1 << below(8)));
                break;
            case 2:
                text.erase(at, length);
                break;
            case 3:
                text.insert(at, text.substr(below(text.size()), length));
                break;
            case 4:
                text.resize(at);
                break;
            case 5:
                if (const auto digit = text.find_first_of("0123456789", at); digit != std::string::npos)
                    text[digit] = static_cast<char>('0' + below(10));
                break;
            default:
                if (const auto name = text.find("SpecialSample", at); name != std::string::npos)
                    text.replace(name, 13, below(2) ? "Unrelated" : "NSNull");
                break;
            }
        }
        const auto data = dataOf(text);
        const auto object = NSKeyedUnarchiver::unarchivedObjectOfClass<Sample>(data);
        ++(object ? survived : refused);
    }
    EXPECT_EQ(Unrelated::made, 0);
    // Both happen often: the changes reach all of the archive, and are not all of them fatal.
    EXPECT_GT(refused, 3000);
    EXPECT_GT(survived, 300);
}
