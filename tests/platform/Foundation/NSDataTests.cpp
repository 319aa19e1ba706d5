#include <Foundation/Foundation.h>

#include "DataText.h"
#include "ObjectText.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

TEST(NSData, HoldsBytes)
{
    const auto data = dataOf(std::string_view("a\0b", 3));
    EXPECT_EQ(data->length(), 3U);
    EXPECT_EQ(static_cast<const char*>(data->bytes())[2], 'b');
    EXPECT_TRUE(data->isEqual(dataOf(std::string_view("a\0b", 3)).get()));
    EXPECT_FALSE(data->isEqual(dataOf("ab").get()));
    EXPECT_EQ(NSData::data()->bytes(), nullptr);
    EXPECT_EQ(NSData::dataWithBytes(nullptr, 5)->length(), 0U);
    EXPECT_EQ(text(*data), "{length = 3, bytes = 0x610062}");
    EXPECT_EQ(text(*dataOf("0123456789abcdef0123456789")),
        "{length = 26, bytes = 0x3031323334353637 ... 3233343536373839}");
}

TEST(NSData, ReadsAndWritesFiles)
{
    const TemporaryFolder folder;
    const std::string bytes(200000, 'x');
    const NSString path(folder.file("file"));
    for (const bool atomically : {false, true}) {
        EXPECT_TRUE(dataOf(bytes)->writeToFile(path, atomically));
        EXPECT_TRUE(NSData::dataWithContentsOfFile(path)->isEqual(dataOf(bytes).get()));
    }
    EXPECT_TRUE(dataOf("")->writeToFile(path, true));
    EXPECT_EQ(NSData::dataWithContentsOfURL(NSURL::fileURLWithPath(path).get())->length(), 0U);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1); // nothing beside it
}

TEST(NSData, ReplacedFileKeepsItsPermissions)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("file", "old");
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    EXPECT_TRUE(dataOf("new")->writeToFile(NSString(path), true));
    struct stat info { };
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640U);
}

TEST(NSData, FilesThatCannotBeReadOrWrittenAreAnswered)
{
    const TemporaryFolder folder;
    EXPECT_EQ(NSData::dataWithContentsOfFile(NSString(folder.file("missing"))), nullptr);
    EXPECT_EQ(NSData::dataWithContentsOfFile(NSString(folder.path().string())), nullptr);
    EXPECT_EQ(NSData::dataWithContentsOfFile(nullptr), nullptr);
    EXPECT_EQ(NSData::dataWithContentsOfURL(nullptr), nullptr);
    EXPECT_EQ(NSData::dataWithContentsOfURL(NSURL::URLWithString("https://example.org/a").get()), nullptr);
    for (const bool atomically : {false, true}) {
        EXPECT_FALSE(dataOf("a")->writeToFile(NSString(folder.file("no/such/folder")), atomically));
        EXPECT_FALSE(dataOf("a")->writeToFile(nullptr, atomically));
    }
}

TEST(NSData, NewFilesGetTheProcessesPermissions)
{
    const TemporaryFolder folder;
    const mode_t before = umask(027);
    for (const bool atomically : {false, true}) {
        const std::string path = folder.file(atomically ? "whole" : "plain");
        EXPECT_TRUE(dataOf("new")->writeToFile(NSString(path), atomically));
        struct stat info { };
        EXPECT_EQ(stat(path.c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 07777, 0640U);
    }
    umask(before);
}

TEST(NSData, PathWithANULIsNoFile)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("file", "old");
    const NSString cut(std::string_view(path + std::string("\0more", 5)));
    EXPECT_EQ(NSData::dataWithContentsOfFile(cut), nullptr);
    EXPECT_FALSE(dataOf("new")->writeToFile(cut, false));
    EXPECT_TRUE(NSData::dataWithContentsOfFile(NSString(path))->isEqual(dataOf("old").get()));
}

TEST(NSData, AFolderIsNotReplaced)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "inner");
    EXPECT_FALSE(dataOf("a")->writeToFile(NSString(folder.file("inner")), true));
    EXPECT_TRUE(std::filesystem::is_directory(folder.path() / "inner"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST(NSData, EqualDataHaveEqualHashes)
{
    EXPECT_EQ(dataOf("abc")->hash(), dataOf("abc")->hash());
    EXPECT_NE(dataOf("abc")->hash(), dataOf("abd")->hash());
    EXPECT_FALSE(dataOf("abc")->isEqual(nullptr));
}
