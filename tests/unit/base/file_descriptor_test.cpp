#include "base/file_descriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <utility>

namespace doccam::test {
namespace {

int openNull() {
    return open("/dev/null", O_RDONLY | O_CLOEXEC);
}

bool isOpen(int descriptor) {
    return fcntl(descriptor, F_GETFD) >= 0;
}

TEST(FileDescriptor, HoldsNothingAtFirst) {
    const FileDescriptor none;
    EXPECT_FALSE(none.valid());
    EXPECT_LT(none.get(), 0);
}

TEST(FileDescriptor, ClosesAtTheEndOfItsLife) {
    const int descriptor = openNull();
    {
        const FileDescriptor owner(descriptor);
        EXPECT_TRUE(owner.valid());
        EXPECT_EQ(owner.get(), descriptor);
        EXPECT_TRUE(isOpen(descriptor));
    }
    EXPECT_FALSE(isOpen(descriptor));
}

TEST(FileDescriptor, KeepsWhatItReleasesOpen) {
    const int descriptor = openNull();
    {
        FileDescriptor owner(descriptor);
        EXPECT_EQ(owner.release(), descriptor);
        EXPECT_FALSE(owner.valid());
    }
    EXPECT_TRUE(isOpen(descriptor));
    const FileDescriptor closesIt(descriptor);
}

TEST(FileDescriptor, ClosesTheOldOneWhenItTakesOverAnother) {
    const int first = openNull();
    const int second = openNull();
    FileDescriptor owner(first);
    owner.reset(second);
    EXPECT_FALSE(isOpen(first));
    EXPECT_TRUE(isOpen(second));
    owner.reset();
    EXPECT_FALSE(isOpen(second));
    EXPECT_FALSE(owner.valid());
}

TEST(FileDescriptor, MovesWithoutClosing) {
    const int descriptor = openNull();
    FileDescriptor first(descriptor);
    FileDescriptor second(std::move(first));
    EXPECT_EQ(second.get(), descriptor);
    EXPECT_TRUE(isOpen(descriptor));
    FileDescriptor third;
    third = std::move(second);
    EXPECT_EQ(third.get(), descriptor);
    EXPECT_TRUE(isOpen(descriptor));
}

TEST(FileDescriptor, ClosesItsOwnWhenAnotherIsMovedIn) {
    const int first = openNull();
    const int second = openNull();
    FileDescriptor owner(first);
    owner = FileDescriptor(second);
    EXPECT_FALSE(isOpen(first));
    EXPECT_TRUE(isOpen(second));
}

TEST(FileDescriptor, SurvivesAMoveToItself) {
    const int descriptor = openNull();
    FileDescriptor owner(descriptor);
    FileDescriptor& alias = owner;
    owner = std::move(alias);
    EXPECT_EQ(owner.get(), descriptor);
    EXPECT_TRUE(isOpen(descriptor));
}

} // namespace
} // namespace doccam::test
