#include <Foundation/Foundation.h>

#include <gtest/gtest.h>

TEST(NSStringPaths, LastPathComponent)
{
    EXPECT_EQ(NSString("/tmp/scratch.tiff").lastPathComponent(), NSString("scratch.tiff"));
    EXPECT_EQ(NSString("/tmp/").lastPathComponent(), NSString("tmp"));
    EXPECT_EQ(NSString("scratch///").lastPathComponent(), NSString("scratch"));
    EXPECT_EQ(NSString("/").lastPathComponent(), NSString("/"));
    EXPECT_EQ(NSString("///").lastPathComponent(), NSString("/"));
    EXPECT_EQ(NSString("").lastPathComponent(), NSString(""));
    EXPECT_TRUE(NSString().lastPathComponent().isNull());
}

TEST(NSStringPaths, PathExtension)
{
    EXPECT_EQ(NSString("/tmp/scratch.tiff").pathExtension(), NSString("tiff"));
    EXPECT_EQ(NSString("/tmp/scratch.tar.gz/").pathExtension(), NSString("gz"));
    EXPECT_EQ(NSString("/tmp.d/scratch").pathExtension(), NSString(""));
    EXPECT_EQ(NSString("/tmp/scratch..tiff").pathExtension(), NSString("tiff"));
    EXPECT_EQ(NSString(".profile").pathExtension(), NSString(""));
    EXPECT_EQ(NSString("scratch.").pathExtension(), NSString(""));
    EXPECT_TRUE(NSString().pathExtension().isNull());
}

TEST(NSStringPaths, AppendsPathComponents)
{
    EXPECT_EQ(NSString("/tmp").stringByAppendingPathComponent("a"), NSString("/tmp/a"));
    EXPECT_EQ(NSString("/tmp/").stringByAppendingPathComponent("/a/"), NSString("/tmp/a"));
    EXPECT_EQ(NSString("/").stringByAppendingPathComponent("a"), NSString("/a"));
    EXPECT_EQ(NSString("").stringByAppendingPathComponent("a"), NSString("a"));
    EXPECT_EQ(NSString("/tmp/").stringByAppendingPathComponent(""), NSString("/tmp"));
    EXPECT_TRUE(NSString().stringByAppendingPathComponent("a").isNull());
}

TEST(NSStringPaths, AppendsPathExtensions)
{
    EXPECT_EQ(NSString("/tmp/a").stringByAppendingPathExtension("png"), NSString("/tmp/a.png"));
    EXPECT_EQ(NSString("/tmp/").stringByAppendingPathExtension("png"), NSString("/tmp.png"));
    EXPECT_EQ(NSString("a.").stringByAppendingPathExtension("png"), NSString("a..png"));
    EXPECT_EQ(NSString("/").stringByAppendingPathExtension("png"), NSString("/"));
    EXPECT_EQ(NSString("a").stringByAppendingPathExtension(nullptr), NSString("a"));
}

TEST(NSStringPaths, DeletesPathComponentsAndExtensions)
{
    EXPECT_EQ(NSString("/tmp/a.png").stringByDeletingLastPathComponent(), NSString("/tmp"));
    EXPECT_EQ(NSString("/tmp/a/").stringByDeletingLastPathComponent(), NSString("/tmp"));
    EXPECT_EQ(NSString("/tmp").stringByDeletingLastPathComponent(), NSString("/"));
    EXPECT_EQ(NSString("/").stringByDeletingLastPathComponent(), NSString("/"));
    EXPECT_EQ(NSString("a").stringByDeletingLastPathComponent(), NSString(""));
    EXPECT_EQ(NSString("/tmp/a.png").stringByDeletingPathExtension(), NSString("/tmp/a"));
    EXPECT_EQ(NSString("/tmp/").stringByDeletingPathExtension(), NSString("/tmp"));
    EXPECT_EQ(NSString("a.bundle/").stringByDeletingPathExtension(), NSString("a"));
    EXPECT_EQ(NSString("a..png").stringByDeletingPathExtension(), NSString("a."));
    EXPECT_EQ(NSString(".profile").stringByDeletingPathExtension(), NSString(".profile"));
    EXPECT_EQ(NSString("/").stringByDeletingPathExtension(), NSString("/"));
}
