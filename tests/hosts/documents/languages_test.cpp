// The names of tesseract's languages and of their packages.
#include "documents/text/languages.h"
#include "host/failure.h"

#include <gmock/gmock.h>

namespace doccam::test {
namespace {

using host::languagesIn;
using host::packageOf;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Languages, AreJoinedByPlus) {
    EXPECT_THAT(languagesIn("eng+chi_sim+script/Latin+eng"),
                ElementsAre("eng", "chi_sim", "script/Latin"));
    EXPECT_THAT(languagesIn(""), IsEmpty());
}

TEST(Languages, AreRefusedUnlessTheyCanBeNames) {
    for (const char* names : {"+", "eng+", "+eng", "eng++deu", "eng deu", "eng,deu", "-l", "../eng",
                              "eng;rm", "eng\n", "d\xc3\xa4n"}) {
        EXPECT_THROW(languagesIn(names), host::Failure) << names;
    }
}

TEST(Languages, AreInPackagesNamedAsDebianDoes) {
    EXPECT_TRUE(host::mayBePackaged("deu") && host::mayBePackaged("chi_sim") &&
                host::mayBePackaged("script/Latin"));
    EXPECT_FALSE(host::mayBePackaged("ENG") || host::mayBePackaged("de") ||
                 host::mayBePackaged("german"));
    EXPECT_EQ(packageOf("deu"), "tesseract-ocr-deu");
    EXPECT_EQ(packageOf("chi_sim_vert"), "tesseract-ocr-chi-sim-vert");
    EXPECT_EQ(packageOf("script/Latin"), "tesseract-ocr-script-latn");
    EXPECT_EQ(packageOf("script/HanS_vert"), "tesseract-ocr-script-hans-vert");
    EXPECT_EQ(packageOf("script/Canadian_Aboriginal"), "tesseract-ocr-script-cans");
}

} // namespace
} // namespace doccam::test
