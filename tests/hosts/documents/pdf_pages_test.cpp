// Pages of other PDFs, and what a PDF says of itself.
#include "checked_pdf.h"
#include "documents/writer/file_parts.h"
#include "documents/writer/pdf_writer.h"
#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>

#include <string>

namespace doccam::test {
namespace {

using host::DocumentError;
using testing::ElementsAre;
using testing::HasSubstr;

class PdfPages : public testing::Test {
  protected:
    std::string path(const std::string& name) const { return folder_.file(name); }

    // A document of one page with a grey picture.
    std::string document(const std::string& name, int grey, double width) const {
        const std::string picture = path(name + ".jpg");
        cv::imwrite(picture, cv::Mat(100, 100, CV_8UC3, cv::Scalar::all(grey)));
        host::writePdf({.pages = {{.file = picture, .size = {width, 100}}}}, path(name));
        return path(name);
    }

    ScratchFolder folder_;
};

TEST_F(PdfPages, AreAppendedWithTheirStreamsUnchanged) {
    const std::string one = document("one.pdf", 30, 100);
    const std::string two = document("two.pdf", 200, 120);
    host::writePdf({.base = one, .pages = {{.file = two, .part = 0}}}, path("both.pdf"));
    EXPECT_TRUE(isSound(path("both.pdf")));
    EXPECT_THAT(pageSizes(path("both.pdf")), ElementsAre("283.465 x 283.465", "340.157 x 283.465"));
    said("pdfimages -j " + path("both.pdf") + " " + path("image"));
    EXPECT_EQ(said("cmp " + path("image-000.jpg") + " " + path("one.pdf.jpg")), "");
    EXPECT_EQ(said("cmp " + path("image-001.jpg") + " " + path("two.pdf.jpg")), "");
    EXPECT_LT(shown(path("both.pdf"), 1).at<uchar>(100, 100), 40);
}

TEST_F(PdfPages, SayTheirSizes) {
    const auto parts = host::fileParts(document("one.pdf", 30, 120));
    ASSERT_EQ(parts.size(), 1);
    EXPECT_NEAR(parts[0].page->width, 120, 0.01);
    EXPECT_NEAR(parts[0].page->height, 100, 0.01);
}

TEST_F(PdfPages, OfAnEncryptedDocumentAreRefused) {
    const std::string one = document("one.pdf", 30, 100);
    for (const std::string& password : {std::string("''"), std::string("secret")}) {
        said("qpdf --encrypt " + password + " owner 256 -- " + one + " " + path("locked.pdf"));
        EXPECT_THAT([&] { host::fileParts(path("locked.pdf")); },
                    testing::ThrowsMessage<DocumentError>(HasSubstr("is encrypted")));
    }
}

TEST_F(PdfPages, OfASignedDocumentAreRefused) {
    const std::string one = document("one.pdf", 30, 100);
    said("qpdf --qdf --object-streams=disable " + one + " " + path("plain.pdf"));
    said("sed 's|/Type /Catalog|/Type /Catalog /AcroForm << /SigFlags 3 /Fields [] >>|' " +
         path("plain.pdf") + " > " + path("signed.pdf"));
    EXPECT_THAT([&] { host::fileParts(path("signed.pdf")); },
                testing::ThrowsMessage<DocumentError>(HasSubstr("is signed")));
}

// Of two documents with a layer that is switched off.
TEST_F(PdfPages, HideWhatWasHidden) {
    for (const std::string name : {"one", "two"}) {
        document(name + ".pdf", 200, 100);
        said("qpdf --qdf --object-streams=disable " + path(name + ".pdf") + " " +
             path("plain.pdf"));
        said("sed -e 's|/Type /Catalog|/Type /Catalog /OCProperties << /OCGs [ 90 0 R ] /D << /OFF "
             "[ 90 0 R ] >> >>|' -e 's|^/Im0 Do|/OC /Hidden BDC 0 0 1 1 re f EMC|' -e "
             "'s|/XObject|/Properties << /Hidden 90 0 R >> /XObject|' -e '0,/^xref/s|^xref|90 0 obj"
             "\\n<< /Type /OCG /Name (Hidden) >>\\nendobj\\nxref|' " +
             path("plain.pdf") + " > " + path("edited.pdf") + "; qpdf " + path("edited.pdf") + " " +
             path(name + "-layers.pdf"));
        ASSERT_GT(shown(path(name + "-layers.pdf")).at<uchar>(100, 100), 250) << name;
    }
    host::writePdf({.pages = {{.file = path("one-layers.pdf")}, {.file = path("two-layers.pdf")}}},
                   path("both.pdf"));
    EXPECT_TRUE(isSound(path("both.pdf")));
    for (const int page : {1, 2}) {
        EXPECT_GT(shown(path("both.pdf"), page).at<uchar>(100, 100), 250) << page;
    }
}

TEST_F(PdfPages, OfADamagedDocumentAreRefused) {
    const std::string one = document("one.pdf", 30, 100);
    said("head -c 300 " + one + " > " + path("cut.pdf"));
    EXPECT_THROW(host::fileParts(path("cut.pdf")), DocumentError);
}

TEST_F(PdfPages, BelongToADocumentThatSaysWhatItIs) {
    const std::string one = document("one.pdf", 30, 100);
    host::writePdf({.base = one,
                    .title = "Brief für Żółw",
                    .author = "Ada",
                    .language = "de-CH",
                    .date = 86400},
                   path("out.pdf"));
    const std::string info = said("TZ=UTC pdfinfo " + path("out.pdf"));
    EXPECT_THAT(info, HasSubstr("Brief für Żółw"));
    EXPECT_THAT(info, HasSubstr("Ada"));
    EXPECT_THAT(info, HasSubstr("Jan  2 00:00:00 1970"));
    EXPECT_THAT(said("qpdf --qdf --object-streams=disable " + path("out.pdf") + " -"),
                HasSubstr("/Lang (de-CH)"));
}

TEST_F(PdfPages, AreNotLeftHalfWritten) {
    const std::string one = document("one.pdf", 30, 100);
    EXPECT_THROW(host::writePdf({.base = one}, path("no/out.pdf")), DocumentError);
}

} // namespace
} // namespace doccam::test
