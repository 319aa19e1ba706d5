#include "PDFFiles.h"

#include <KorvidAppKit/ZRPDF.h>

#include <Foundation/NSDictionary.h>
#include <Foundation/WeakPtr.h>

#include "Foundation/testing/MainBundleFolder.h"
#include "Foundation/testing/NSLogCapture.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace {

/// A resource folder of its own and an empty cache, for as long as the test runs.
class ZRPDFCache : public testing::Test {
protected:
    ZRPDFCache()
        : _bundle(NSString(_folder.path().string()))
    {
        ZRPDF::emptyCache();
    }
    ~ZRPDFCache() override { ZRPDF::emptyCache(); }

    /// A resource with that many pages.
    void add(const std::string& name, std::size_t pages) const
    {
        _folder.write(name, pdfFile(std::vector<PDFPageText>(pages)));
    }
    void remove(const std::string& name) const { std::filesystem::remove(_folder.file(name)); }
    const TemporaryFolder& folder() const { return _folder; }

    static std::vector<NSString> keys() { return ZRPDF::_sharedCache()->allKeys(); }

private:
    TemporaryFolder _folder;
    MainBundleFolder _bundle;
};

using Keys = std::vector<NSString>;

} // namespace

TEST_F(ZRPDFCache, IsOneMutableDictionary)
{
    NSMutableDictionary* const cache = ZRPDF::_sharedCache();
    ASSERT_NE(cache, nullptr);
    EXPECT_EQ(ZRPDF::_sharedCache(), cache);
    EXPECT_EQ(cache->count(), 0U);
}

TEST_F(ZRPDFCache, ADocumentIsReadOnceAndSharedUnderItsName)
{
    add("star.pdf", 1);
    const auto star = ZRPDF::pdfNamed("star");
    ASSERT_TRUE(star);
    EXPECT_EQ(keys(), Keys{"star"});
    EXPECT_EQ(ZRPDF::_sharedCache()->objectForKey("star"), star.get());
    remove("star.pdf");
    EXPECT_EQ(ZRPDF::pdfNamed("star"), star);
}

TEST_F(ZRPDFCache, TheExtensionIsAlwaysLowerCasePdf)
{
    add("upper.PDF", 1);
    add("plain", 1);
    add("twice.pdf.pdf", 1);
    EXPECT_EQ(ZRPDF::pdfNamed("upper"), nullptr);
    EXPECT_EQ(ZRPDF::pdfNamed("plain"), nullptr);
    EXPECT_EQ(ZRPDF::pdfNamed("twice"), nullptr);
    EXPECT_TRUE(ZRPDF::pdfNamed("twice.pdf"));
    EXPECT_EQ(keys(), Keys{"twice.pdf"});
}

TEST_F(ZRPDFCache, WithoutTheFlagNothingIsCached)
{
    add("star.pdf", 1);
    const auto star = ZRPDF::pdfNamed("star", false);
    ASSERT_TRUE(star);
    EXPECT_EQ(keys(), Keys{});
    EXPECT_NE(ZRPDF::pdfNamed("star", false), star);
    EXPECT_NE(ZRPDF::pdfNamed("star", nullptr, false), star);
    EXPECT_EQ(keys(), Keys{});
}

TEST_F(ZRPDFCache, ACachedDocumentIsReturnedWhateverTheFlagSays)
{
    add("star.pdf", 1);
    add("Icons/star.pdf", 2);
    const auto star = ZRPDF::pdfNamed("star", true);
    const auto other = ZRPDF::pdfNamed("star", "Icons", true);
    ASSERT_TRUE(star && other);
    EXPECT_EQ(ZRPDF::pdfNamed("star", false), star);
    EXPECT_EQ(ZRPDF::pdfNamed("star", nullptr, false), star);
    EXPECT_EQ(ZRPDF::pdfNamed("star", "Icons", false), other);
    EXPECT_EQ(keys(), (Keys{"Icons/star", "star"}));
}

TEST_F(ZRPDFCache, ASubdirectoryIsPartOfTheKey)
{
    add("Icons/star.pdf", 2);
    EXPECT_EQ(ZRPDF::pdfNamed("star", nullptr, true), nullptr);
    EXPECT_EQ(ZRPDF::pdfNamed("star", "PDF", true), nullptr);
    const auto star = ZRPDF::pdfNamed("star", "Icons", true);
    ASSERT_TRUE(star);
    EXPECT_EQ(star->numberOfPages(), 2U);
    EXPECT_EQ(keys(), Keys{"Icons/star"});
}

TEST_F(ZRPDFCache, TheRootWinsOverTheSubdirectory)
{
    add("star.pdf", 1);
    add("PDF/star.pdf", 2);
    EXPECT_EQ(ZRPDF::pdfNamed("star")->numberOfPages(), 1U);
    EXPECT_EQ(keys(), Keys{"star"});
    EXPECT_EQ(ZRPDF::pdfNamed("star", "PDF", true)->numberOfPages(), 2U);
    EXPECT_EQ(keys(), (Keys{"PDF/star", "star"}));
}

TEST_F(ZRPDFCache, WhatIsOnlyInTheSubdirectoryIsFoundThereEachTime)
{
    add("PDF/star.pdf", 1);
    const auto star = ZRPDF::pdfNamed("star");
    ASSERT_TRUE(star);
    EXPECT_EQ(keys(), Keys{"PDF/star"});
    EXPECT_EQ(ZRPDF::pdfNamed("star"), star);
    EXPECT_EQ(keys(), Keys{"PDF/star"});
    // The root is searched again each time, and wins from then on.
    add("star.pdf", 2);
    EXPECT_EQ(ZRPDF::pdfNamed("star")->numberOfPages(), 2U);
    EXPECT_EQ(keys(), (Keys{"PDF/star", "star"}));
}

TEST_F(ZRPDFCache, TheFlagReachesTheSubdirectory)
{
    add("PDF/star.pdf", 1);
    EXPECT_TRUE(ZRPDF::pdfNamed("star", false));
    EXPECT_EQ(keys(), Keys{});
}

TEST_F(ZRPDFCache, FailuresAreNeitherCachedNorLogged)
{
    const NSLogCapture log;
    folder().write("broken.pdf", "not a document");
    EXPECT_EQ(ZRPDF::pdfNamed("missing"), nullptr);
    EXPECT_EQ(ZRPDF::pdfNamed("broken"), nullptr);
    EXPECT_EQ(ZRPDF::pdfNamed(""), nullptr);
    EXPECT_EQ(ZRPDF::pdfNamed(NSString()), nullptr);
    EXPECT_EQ(ZRPDF::pdfNamed(NSString(), "PDF", true), nullptr);
    EXPECT_EQ(ZRPDF::pdfNamed("../star"), nullptr);
    EXPECT_EQ(keys(), Keys{});
    EXPECT_EQ(log.messages(), std::vector<std::string>{});

    add("broken.pdf", 1); // the file is replaced by a good one
    EXPECT_TRUE(ZRPDF::pdfNamed("broken"));
}

TEST_F(ZRPDFCache, EmptyingReleasesTheDocuments)
{
    add("star.pdf", 1);
    add("PDF/moon.pdf", 1);
    const auto star = ZRPDF::pdfNamed("star");
    const WeakPtr<ZRPDF> moon = ZRPDF::pdfNamed("moon").get();
    EXPECT_TRUE(moon.lock());
    ZRPDF::emptyCache();
    EXPECT_EQ(keys(), Keys{});
    EXPECT_FALSE(moon.lock());
    EXPECT_EQ(star->numberOfPages(), 1U); // still valid for its owner
    EXPECT_NE(ZRPDF::pdfNamed("star"), star);
}

TEST_F(ZRPDFCache, RemovesADocumentByIdentity)
{
    add("star.pdf", 1);
    add("moon.pdf", 1);
    const auto star = ZRPDF::pdfNamed("star");
    const auto twin = ZRPDF::pdfNamed("moon");
    ZRPDF::emptyCache();
    const auto cachedStar = ZRPDF::pdfNamed("star");
    const auto moon = ZRPDF::pdfNamed("moon");
    EXPECT_FALSE(ZRPDF::removeFromCache(star)); // another object of the same file
    EXPECT_FALSE(ZRPDF::removeFromCache(twin));
    EXPECT_FALSE(ZRPDF::removeFromCache(nullptr));
    EXPECT_EQ(keys(), (Keys{"moon", "star"}));
    EXPECT_TRUE(ZRPDF::removeFromCache(cachedStar));
    EXPECT_EQ(keys(), Keys{"moon"});
    EXPECT_FALSE(ZRPDF::removeFromCache(cachedStar));
    EXPECT_TRUE(ZRPDF::removeFromCache(moon));
    EXPECT_EQ(keys(), Keys{});
}

TEST_F(ZRPDFCache, RemovesOneOfSeveralNames)
{
    add("star.pdf", 1);
    const auto star = ZRPDF::pdfNamed("star");
    ZRPDF::_sharedCache()->setObject(star, "alias");
    EXPECT_TRUE(ZRPDF::removeFromCache(star));
    EXPECT_EQ(keys().size(), 1U);
    EXPECT_TRUE(ZRPDF::removeFromCache(star));
    EXPECT_EQ(keys().size(), 0U);
    EXPECT_FALSE(ZRPDF::removeFromCache(star));
}

TEST_F(ZRPDFCache, RemovingTheLastReferenceDestroysTheDocument)
{
    add("star.pdf", 1);
    const WeakPtr<ZRPDF> star = ZRPDF::pdfNamed("star").get();
    EXPECT_TRUE(ZRPDF::removeFromCache(star.lock().get()));
    EXPECT_FALSE(star.lock());
}
