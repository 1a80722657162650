// Parsing a request's head, and what of it is passed on.
#include "serve/http/request_head.h"

#include <gtest/gtest.h>

#include <string>

namespace doccam::serve {
namespace {

const std::string kGood = "GET /a/b?x=1&ticket=ab&y= HTTP/1.1\r\nHost: h:1\r\nX-Odd:\t v \r\n\r\n";

std::string manyHeaders(int count) {
    std::string head = "GET / HTTP/1.1\r\n";
    for (int i = 0; i < count; ++i) {
        head += "A: b\r\n";
    }
    return head + "\r\n";
}

} // namespace

TEST(RequestHead, IsParsed) {
    const auto head = parseHead(kGood);
    ASSERT_TRUE(head);
    EXPECT_EQ(head->method, "GET");
    EXPECT_EQ(head->path(), "/a/b");
    EXPECT_EQ(head->header("host"), "h:1");
    EXPECT_EQ(head->header("x-odd"), "v");
    EXPECT_EQ(head->header("missing"), "");
    EXPECT_EQ(head->count("host"), 1U);
}

TEST(RequestHead, ContainsTheFieldsOfItsQuery) {
    const auto head = parseHead(kGood);
    ASSERT_TRUE(head);
    EXPECT_EQ(head->query("x"), "1");
    EXPECT_EQ(head->query("ticket"), "ab");
    EXPECT_EQ(head->query("y"), "");
    EXPECT_EQ(head->query("tick"), "");
    EXPECT_EQ(parseHead("GET /?x HTTP/1.1\r\n\r\n")->query("x"), "");
    EXPECT_EQ(parseHead("GET /?&&x=2 HTTP/1.1\r\n\r\n")->query("x"), "2");
}

TEST(RequestHead, EndsWithItsEmptyLine) {
    EXPECT_EQ(headLength(kGood + "body"), kGood.size());
    EXPECT_EQ(headLength(kGood.substr(0, kGood.size() - 1)), std::nullopt);
}

TEST(RequestHead, IsStrictHttp) {
    for (const char* text :
         {"", "\r\n\r\n", "nonsense\r\n\r\n", "GET /\r\n\r\n", "GET / HTTP/2.0\r\n\r\n",
          "get / HTTP/1.1\r\n\r\n", "GET  / HTTP/1.1\r\n\r\n", "GET x HTTP/1.1\r\n\r\n",
          "GET / HTTP/1.1 \r\n\r\n", "GET / HTTP/1.1\r\nno colon\r\n\r\n",
          "GET / HTTP/1.1\r\n: v\r\n\r\n", "GET / HTTP/1.1\r\nA : v\r\n\r\n",
          "GET / HTTP/1.1\r\nA: v\r\n folded\r\n\r\n", "GET / HTTP/1.1\r\nA: \x01\r\n\r\n",
          "GET / HTTP/1.1\r\nA: v\n\r\n\r\n", "GET /\x7f HTTP/1.1\r\n\r\n",
          "GET / HTTP/1.1\r\nA: v\r\n", "GET / HTTP/1.1\r\n\r\nmore"}) {
        EXPECT_FALSE(parseHead(text)) << text;
    }
    EXPECT_TRUE(parseHead("GET / HTTP/1.0\r\n\r\n"));
}

TEST(RequestHead, HasALimitedNumberOfHeaders) {
    EXPECT_TRUE(parseHead(manyHeaders(100)));
    EXPECT_FALSE(parseHead(manyHeaders(101)));
}

TEST(RequestHead, BeginsWithAMethod) {
    for (const char* text : {"", "G", "GET", "GET /", "OPTIONS *"}) {
        EXPECT_TRUE(canBeHead(text)) << text;
    }
    for (const char* text : {"\x16\x03\x01", "get", " GET", "ABCDEFGHIJKLMNOPQ"}) {
        EXPECT_FALSE(canBeHead(text)) << text;
    }
}

TEST(RequestHead, KeepsOnlyHeadersThatDescribeTheBody) {
    const auto head = parseHead("POST /api/zoom HTTP/1.0\r\nHost: h\r\nRange: bytes=0-1,2-3\r\n"
                                "Content-Length: 2\r\nAccept-Encoding: gzip\r\n"
                                "Content-Type: application/json\r\n\r\n");
    ASSERT_TRUE(head);
    EXPECT_EQ(plainHead(*head), "POST /api/zoom HTTP/1.1\r\ncontent-length: 2\r\n"
                                "content-type: application/json\r\n\r\n");
}

} // namespace doccam::serve
