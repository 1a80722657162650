#include "camera/camera_session.h"

#include <doccam/doccam.h>

#include <gmock/gmock.h>

namespace {

using doccam::host::openingAdvice;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

TEST(OpeningAdvice, NamesTheCodeAndTheRemedy) {
    EXPECT_EQ(openingAdvice(DOCCAM_OPEN_NO_NODE),
              "its device node cannot be opened (code -3); doccam doctor says why.");
    for (int code = DOCCAM_OPEN_INTERNAL; code < 0; ++code) {
        EXPECT_THAT(openingAdvice(code), HasSubstr(" (code " + std::to_string(code) + "); "));
    }
}

TEST(OpeningAdvice, PointsToOtherProgramsForAFormatAndForBuffers) {
    for (const int code :
         {DOCCAM_OPEN_TRY_FORMAT, DOCCAM_OPEN_SET_FORMAT, DOCCAM_OPEN_GET_FORMAT}) {
        EXPECT_THAT(openingAdvice(code), AllOf(StartsWith("the driver refuses the format"),
                                               HasSubstr("another program")));
    }
    for (const int code :
         {DOCCAM_OPEN_REQUEST_BUFFERS, DOCCAM_OPEN_TOO_FEW_BUFFERS, DOCCAM_OPEN_QUERY_BUFFER,
          DOCCAM_OPEN_MAP_BUFFER, DOCCAM_OPEN_QUEUE_BUFFER}) {
        EXPECT_THAT(openingAdvice(code), AllOf(StartsWith("the driver gives no buffers"),
                                               HasSubstr("close other programs")));
    }
}

TEST(OpeningAdvice, SuggestsTheDoctorForAnythingElse) {
    for (const int code : {-14, -4, -15, 1}) {
        EXPECT_THAT(openingAdvice(code), StartsWith("the library failed (code "));
    }
}

} // namespace
