#include "faults/faults.h"

#include <doccam/doccam.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace doccam::test {
namespace {

int heardFault = -1;
std::string heardMessage;

void onFault(int fault, const char* message) {
    heardFault = fault;
    heardMessage = message;
}

class Containing : public testing::Test {
  protected:
    Containing() {
        heardFault = -1;
        heardMessage.clear();
    }

    ~Containing() override { SetFaultCallback(nullptr); }
};

TEST_F(Containing, LetsExceptionsThroughWithoutAFaultCallback) {
    EXPECT_THROW(containing(DOCCAM_FAULT_STILL, [] { throw std::runtime_error("no film"); }),
                 std::runtime_error);
}

TEST_F(Containing, ReportsTheExceptionsTextToTheHost) {
    SetFaultCallback(onFault);
    containing(DOCCAM_FAULT_STILL, [] { throw std::runtime_error("no film"); });
    EXPECT_EQ(heardFault, DOCCAM_FAULT_STILL);
    EXPECT_EQ(heardMessage, "no film");
}

TEST_F(Containing, ReportsAnythingThatIsThrown) {
    SetFaultCallback(onFault);
    containing(DOCCAM_FAULT_CODE, [] { throw 3; });
    EXPECT_EQ(heardFault, DOCCAM_FAULT_CODE);
    EXPECT_EQ(heardMessage, "unknown error");
}

TEST_F(Containing, HoldsFaultsBackUntilTheyAreDelivered) {
    SetFaultCallback(onFault);
    DeferredFaults notes;
    reportFault({DOCCAM_FAULT_PREVIEW, DOCCAM_CAUSE_OTHER, "too far"});
    EXPECT_EQ(heardFault, -1);
    EXPECT_FALSE(notes.empty());
    notes.report();
    EXPECT_EQ(heardFault, DOCCAM_FAULT_PREVIEW);
    EXPECT_TRUE(notes.empty());
}

} // namespace
} // namespace doccam::test
