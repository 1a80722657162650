// Responses sent without a handler.
#include "serve/http/plain_answer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace doccam::serve {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST(PlainAnswer, IsACompleteResponse) {
    const std::string bytes = bytesOf({200, "text/plain", "body"});
    EXPECT_THAT(bytes, StartsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_THAT(bytes, HasSubstr("\r\nContent-Length: 4\r\n"));
    EXPECT_THAT(bytes, HasSubstr("\r\nConnection: close\r\n"));
    EXPECT_THAT(bytes, HasSubstr("\r\nCache-Control: no-store\r\n"));
    EXPECT_THAT(bytes, EndsWith("\r\n\r\nbody"));
}

TEST(PlainAnswer, HasNoBodyForHead) {
    const std::string bytes = bytesOf({200, "text/plain", "body", false});
    EXPECT_THAT(bytes, HasSubstr("\r\nContent-Length: 4\r\n"));
    EXPECT_THAT(bytes, EndsWith("\r\n\r\n"));
}

TEST(PlainAnswer, OfARefusalIsJsonForProgramsAndHtmlForPeople) {
    const Refusal refusal{403, "do this"};
    EXPECT_THAT(refusalBytes(refusal, {}), EndsWith("\r\n\r\n{\"error\":\"do this\"}"));
    const RequestHead person{"GET", "/", {{"accept", "text/html,*/*"}}};
    EXPECT_THAT(refusalBytes(refusal, person), HasSubstr("<p>do this.</p>"));
    EXPECT_THAT(refusalBytes(refusal, {"POST", "/", person.headers}), Not(HasSubstr("<p>")));
}

TEST(PlainAnswer, HasThePhraseOfItsStatus) {
    for (const auto& [status, phrase] :
         {std::pair{400, "Bad Request"}, std::pair{405, "Method Not Allowed"},
          std::pair{411, "Length Required"}, std::pair{413, "Content Too Large"},
          std::pair{414, "URI Too Long"}, std::pair{415, "Unsupported Media Type"},
          std::pair{431, "Request Header Fields Too Large"}}) {
        EXPECT_THAT(refusalBytes({status, "no"}, {}),
                    StartsWith("HTTP/1.1 " + std::to_string(status) + " " + phrase + "\r\n"));
    }
}

TEST(PlainAnswer, SaysWhenToRetry) {
    EXPECT_THAT(refusalBytes({503, "busy"}, {}), HasSubstr("\r\nRetry-After: "));
}

TEST(PlainAnswer, OfARefusalIsSmall) {
    EXPECT_LE(refusalBytes({403, std::string(100, 'x')}, {}).size(), 1024U);
}

} // namespace doccam::serve
