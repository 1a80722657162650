// What to open in a browser.
#include "serve/access/access.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace doccam::serve {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(Addresses, AreTheOneTheServerListensOn) {
    EXPECT_THAT(addressesOf("camera.lan", 81, "t"), ElementsAre("http://camera.lan:81/#token=t"));
    EXPECT_THAT(addressesOf("fd00::7", 81, "t"), ElementsAre("http://[fd00::7]:81/#token=t"));
}

TEST(Addresses, OfAWildcardAreTheMachines) {
    for (const std::string wildcard : {"0.0.0.0", "::"}) {
        const auto addresses = addressesOf(wildcard, 81, "t");
        EXPECT_THAT(addresses, Contains("http://127.0.0.1:81/#token=t"));
        EXPECT_THAT(addresses, Each(Not(HasSubstr("fe80")))) << "needs an interface's name";
        EXPECT_THAT(addresses, Not(Contains(HasSubstr("/::"))));
    }
    EXPECT_THAT(addressesOf("0.0.0.0", 81, "t"), Not(Contains(HasSubstr("["))));
}

} // namespace doccam::serve
