// Owned descriptors, on real pipes.
#include "base/unique_fd.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <array>
#include <utility>

namespace doccam::test {
namespace {

bool isOpen(int descriptor) {
    return fcntl(descriptor, F_GETFD) != -1;
}

class UniqueFdTest : public testing::Test {
  protected:
    UniqueFdTest() { EXPECT_EQ(pipe(ends_.data()), 0); }

    ~UniqueFdTest() override {
        for (const int end : ends_) {
            if (isOpen(end)) {
                close(end);
            }
        }
    }

    std::array<int, 2> ends_{};
};

TEST_F(UniqueFdTest, IsEmptyAtFirst) {
    const UniqueFd descriptor;
    EXPECT_FALSE(descriptor.isOpen());
    EXPECT_EQ(descriptor.get(), -1);
}

TEST_F(UniqueFdTest, ClosesItsDescriptorWhenDestroyed) {
    {
        UniqueFd descriptor;
        descriptor.reset(ends_[0]);
        EXPECT_EQ(descriptor.get(), ends_[0]);
        EXPECT_TRUE(isOpen(ends_[0]));
    }
    EXPECT_FALSE(isOpen(ends_[0]));
    EXPECT_TRUE(isOpen(ends_[1]));
}

TEST_F(UniqueFdTest, ClosesADescriptorThatIsReplaced) {
    UniqueFd descriptor;
    descriptor.reset(ends_[0]);
    descriptor.reset(ends_[1]);
    EXPECT_FALSE(isOpen(ends_[0]));
    EXPECT_TRUE(isOpen(ends_[1]));
    descriptor.reset();
    EXPECT_FALSE(isOpen(ends_[1]));
    EXPECT_FALSE(descriptor.isOpen());
}

TEST_F(UniqueFdTest, HandsItsDescriptorOn) {
    UniqueFd first(ends_[0]);
    UniqueFd second(std::move(first));
    EXPECT_EQ(second.get(), ends_[0]);
    UniqueFd third(ends_[1]);
    third = std::move(second);
    EXPECT_FALSE(isOpen(ends_[1]));
    EXPECT_EQ(third.release(), ends_[0]);
    EXPECT_FALSE(third.isOpen());
    EXPECT_TRUE(isOpen(ends_[0]));
}

} // namespace
} // namespace doccam::test
