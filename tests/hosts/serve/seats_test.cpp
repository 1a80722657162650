// Places for viewers.
#include "serve/live/seats.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace doccam::serve {

TEST(Seats, AreGivenUntilAllAreTaken) {
    Seats seats(2);
    const auto first = seats.take();
    const auto second = seats.take();
    EXPECT_NE(first, nullptr);
    EXPECT_NE(second, nullptr);
    EXPECT_EQ(seats.take(), nullptr);
    EXPECT_EQ(seats.taken(), 2);
}

TEST(Seats, ComeBackWithTheirLastCopy) {
    Seats seats(1);
    auto seat = seats.take();
    auto copy = seat;
    seat.reset();
    EXPECT_EQ(seats.take(), nullptr);
    copy.reset();
    EXPECT_NE(seats.take(), nullptr);
}

TEST(Seats, TellHowManyAreTaken) {
    std::vector<int> told;
    Seats seats(2, [&](int count) { told.push_back(count); });
    {
        const auto first = seats.take();
        const auto second = seats.take();
        const auto none = seats.take();
    }
    EXPECT_THAT(told, testing::ElementsAre(1, 2, 1, 0));
}

} // namespace doccam::serve
