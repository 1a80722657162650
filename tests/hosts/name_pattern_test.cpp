#include "host/failure.h"
#include "stills/name_pattern.h"

#include <gtest/gtest.h>

namespace {

using namespace doccam::host;

std::tm aTime() {
    std::tm time{};
    time.tm_year = 126;
    time.tm_mon = 1;
    time.tm_mday = 3;
    time.tm_hour = 4;
    time.tm_min = 5;
    time.tm_sec = 6;
    return time;
}

std::string named(const std::string& pattern, int number = 7) {
    return NamePattern(pattern).name(number, aTime());
}

TEST(NamePattern, LeavesOtherNamesAsTheyAre) {
    for (const std::string name : {"", "page.jpg", "{page}.jpg", "{date", "d.jpg", "a\nb{}"}) {
        EXPECT_EQ(named(name), name);
        EXPECT_FALSE(NamePattern(name).varies());
    }
    EXPECT_EQ(named(literalPattern("/tmp/100%d/out.jpg")), "/tmp/100%d/out.jpg");
}

TEST(NamePattern, HasANumberOfAtLeastItsWidth) {
    EXPECT_EQ(named("page-%d.jpg"), "page-7.jpg");
    EXPECT_EQ(named("page-%03d.jpg"), "page-007.jpg");
    EXPECT_EQ(named("%3d"), "007");
    EXPECT_EQ(named("%03d", 12345), "12345");
    EXPECT_EQ(named("%0d"), "7");
    EXPECT_EQ(named("100%%-%d%%.png"), "100%-7%.png");
    EXPECT_TRUE(NamePattern("%d").hasNumber());
    EXPECT_FALSE(NamePattern("%%d").hasNumber());
}

TEST(NamePattern, HasDateAndTime) {
    EXPECT_EQ(named("{date}/{time}-%d-{date}.jpg"), "2026-02-03/04-05-06-7-2026-02-03.jpg");
    EXPECT_TRUE(NamePattern("{time}.jpg").varies());
    EXPECT_FALSE(NamePattern("{time}.jpg").hasNumber());
}

TEST(NamePattern, IsNoFormatOfPrintf) {
    for (const std::string pattern : {"%", "a%", "%s", "%n", "%x", "%ld", "%*d", "%00d", "%12d",
                                      "%-3d", "%+d", "%1$d", "%d%d", "%3", "%%%", "% d", "%D"}) {
        EXPECT_THROW(NamePattern{pattern}, Failure) << pattern;
    }
}

} // namespace
