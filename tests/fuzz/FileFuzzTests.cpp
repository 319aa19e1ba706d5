#include "ArchiveFuzz.h"
#include "ColorFuzz.h"
#include "JSONFuzz.h"
#include "PNGFuzz.h"
#include "PropertyListFuzz.h"
#include "StringsFuzz.h"

#include <gtest/gtest.h>

// Short runs with fixed seeds; `./korvid fuzz` runs each for as long as it is given.

TEST(ArchiveFuzz, DamagedArchivesAreReadAndWrittenAgainOrRefused)
{
    runDamagedSeeds(kArchiveFuzz, dictionaryWords("archives.dict"), 2, 1000);
    SUCCEED();
}

TEST(ColorFuzz, AnyTextIsTheColorOfItsDigits)
{
    runDamagedSeeds(kColorFuzz, dictionaryWords("colors.dict"), 3, 20000);
    SUCCEED();
}

TEST(JSONFuzz, DamagedCataloguesAndTablesAreReadOrRefused)
{
    runDamagedSeeds(kJSONFuzz, dictionaryWords("json.dict"), 5, 3000);
    SUCCEED();
}

TEST(PNGFuzz, DamagedPicturesAreReadAndWrittenAgainOrRefused)
{
    runDamagedSeeds(kPNGFuzz, dictionaryWords("png.dict"), 7, 3000);
    SUCCEED();
}

TEST(PropertyListFuzz, DamagedListsAreReadAndWrittenAgainOrRefused)
{
    runDamagedSeeds(kPropertyListFuzz, dictionaryWords("plists.dict"), 11, 5000);
    SUCCEED();
}

TEST(StringsFuzz, DamagedTablesAreReadAndWrittenAgainOrRefused)
{
    runDamagedSeeds(kStringsFuzz, dictionaryWords("strings.dict"), 13, 10000);
    SUCCEED();
}
