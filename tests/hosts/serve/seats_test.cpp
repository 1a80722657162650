// Places for viewers.
#include "serve/site/answers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace doccam::serve {

TEST(Seats, AreGrantedUntilAllAreTaken) {
    Seats seats(2);
    const auto first = seats.take();
    const auto second = seats.take();
    EXPECT_NE(first, nullptr);
    EXPECT_NE(second, nullptr);
    EXPECT_EQ(seats.take(), nullptr);
    EXPECT_EQ(seats.taken(), 2);
}

TEST(Seats, AreFreedWithTheirLastCopy) {
    Seats seats(1);
    auto seat = seats.take();
    auto copy = seat;
    seat.reset();
    EXPECT_EQ(seats.take(), nullptr);
    copy.reset();
    EXPECT_NE(seats.take(), nullptr);
}

TEST(Seats, CountHowManyAreTaken) {
    std::vector<int> counts;
    Seats seats(2, [&](int count) { counts.push_back(count); });
    {
        const auto first = seats.take();
        const auto second = seats.take();
        const auto none = seats.take();
    }
    EXPECT_THAT(counts, testing::ElementsAre(1, 2, 1, 0));
}

} // namespace doccam::serve
