#include "ObjectText.h"

#include <Foundation/Foundation.h>

#include <gtest/gtest.h>

TEST(NSURL, SpellsFiles)
{
    const auto url = NSURL::fileURLWithPath("/a folder/ü%.png");
    EXPECT_EQ(url->absoluteString(), NSString("file:///a%20folder/%C3%BC%25.png"));
    EXPECT_EQ(url->path(), NSString("/a folder/ü%.png"));
    EXPECT_EQ(url->scheme(), NSString("file"));
    EXPECT_TRUE(url->isFileURL());
    EXPECT_EQ(url->lastPathComponent(), NSString("ü%.png"));
    EXPECT_EQ(url->pathExtension(), NSString("png"));
    EXPECT_TRUE(url->isEqual(NSURL::fileURLWithPath("/a folder/x/../ü%.png").get()));
    EXPECT_EQ(NSURL::fileURLWithPath("/a")->URLByAppendingPathComponent("b c")->path(), NSString("/a/b c"));
    EXPECT_TRUE(NSURL::fileURLWithPath("relative")->path().hasPrefix("/"));
    EXPECT_EQ(NSURL::fileURLWithPath(""), nullptr);
    EXPECT_EQ(NSURL::fileURLWithPath(nullptr), nullptr);
}

TEST(NSURL, ReadsOtherURLs)
{
    const auto url = NSURL::URLWithString("https://example.org/a/b.html?q=1#f");
    EXPECT_FALSE(url->isFileURL());
    EXPECT_EQ(url->scheme(), NSString("https"));
    EXPECT_EQ(url->path(), NSString("/a/b.html"));
    EXPECT_EQ(url->pathExtension(), NSString("html"));
    EXPECT_EQ(text(*url), "https://example.org/a/b.html?q=1#f");
    EXPECT_EQ(NSURL::URLWithString("http://[bad"), nullptr);
    EXPECT_EQ(NSURL::URLWithString(""), nullptr);
    EXPECT_EQ(NSURL::URLWithString(nullptr), nullptr);
    EXPECT_TRUE(NSURL::URLWithString("a/b")->scheme().isNull());
}

TEST(NSURL, PathHasNoSlashAtItsEnd)
{
    EXPECT_EQ(NSURL::URLWithString("https://example.org/a/")->path(), NSString("/a"));
    EXPECT_EQ(NSURL::URLWithString("https://example.org/")->path(), NSString("/"));
    EXPECT_EQ(NSURL::URLWithString("https://example.org")->path(), NSString(""));
    // Apple ends the URL of a folder that exists with a slash.
    EXPECT_EQ(NSURL::fileURLWithPath("/usr/")->absoluteString(), NSString("file:///usr"));
    EXPECT_EQ(NSURL::fileURLWithPath("/")->path(), NSString("/"));
}

TEST(NSURL, AppendsComponentsToEveryURL)
{
    const auto url = NSURL::URLWithString("https://example.org/a/?q=1");
    EXPECT_EQ(url->URLByAppendingPathComponent("b#1.png")->absoluteString(),
        NSString("https://example.org/a/b%231.png?q=1"));
    EXPECT_EQ(NSURL::URLWithString("https://example.org")->URLByAppendingPathComponent("b")->path(),
        NSString("/b"));
    EXPECT_EQ(url->URLByAppendingPathComponent(nullptr)->path(), NSString("/a"));
    // A relative URL cannot begin with what looks like a scheme.
    EXPECT_EQ(NSURL::URLWithString("?q=1")->URLByAppendingPathComponent("b:c"), nullptr);
}

TEST(NSURL, SpacesAndBrokenEscapesAreNoURL)
{
    EXPECT_EQ(NSURL::URLWithString("https://example.org/a b"), nullptr);
    EXPECT_EQ(NSURL::URLWithString("https://example.org/%zz"), nullptr);
}

TEST(NSURL, EscapesReservedCharactersInFileURLs)
{
    const auto url = NSURL::fileURLWithPath("/a?b#c;d%20");
    EXPECT_EQ(url->path(), NSString("/a?b#c;d%20"));
    EXPECT_TRUE(NSURL::URLWithString(url->absoluteString())->isEqual(url));
    EXPECT_EQ(url->hash(), NSURL::URLWithString(url->absoluteString())->hash());
}
