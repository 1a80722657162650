// Requests accepted or refused by their head alone.
#include "serve/access/admission.h"

#include <gtest/gtest.h>

namespace doccam::serve {
namespace {

constexpr std::size_t kLongest = 100;

const std::string kWithToken = "Authorization: Bearer t\r\n";

struct HeadCase {
    std::string method = "GET";
    std::string target = "/api/state";
    std::string headers = kWithToken;
    bool isOpen = false;
};

class AdmissionTest : public testing::Test {
  protected:
    int statusOf(const HeadCase& request) {
        const std::string start = " HTTP/1.1\r\nHost: 127.0.0.1:8123\r\n";
        const auto head =
            parseHead(request.method + " " + request.target + start + request.headers + "\r\n");
        EXPECT_TRUE(head);
        const AccessRules rules = rulesFor("127.0.0.1", 8123, "t");
        const auto refusal =
            refusalOf({rules, tickets_, request.isOpen, kLongest}, head.value_or(RequestHead{}));
        return refusal ? refusal->status : 200;
    }

    int statusOfTicket(const std::string& path, const std::string& ticket,
                       const std::string& headers = "") {
        return statusOf({"GET", path + "?a=b&ticket=" + ticket, headers});
    }

    int statusOfBody(const std::string& headers) {
        return statusOf({"POST", "/api/zoom", kWithToken + headers});
    }

    Tickets tickets_;
};

TEST_F(AdmissionTest, IsGrantedWithTheToken) {
    EXPECT_EQ(statusOf({}), 200);
    EXPECT_EQ(statusOf({.headers = ""}), 403);
    EXPECT_EQ(statusOf({.headers = "Authorization: Bearer u\r\n"}), 403);
}

TEST_F(AdmissionTest, IsRefusedForATokenInTheAddressOrACookie) {
    EXPECT_EQ(statusOf({.target = "/api/state?token=t", .headers = ""}), 403);
    EXPECT_EQ(statusOf({.headers = "Cookie: doccam-8123=t; token=t\r\n"}), 403);
}

TEST_F(AdmissionTest, IsGrantedWithATicketOnceForOnePath) {
    const std::string ticket = tickets_.issue("/events");
    EXPECT_EQ(statusOfTicket("/preview", ticket), 403);
    EXPECT_EQ(statusOfTicket("/events", ticket), 200);
    EXPECT_EQ(statusOfTicket("/events", ticket), 403);
    EXPECT_EQ(statusOfTicket("/events", ""), 403);
}

TEST_F(AdmissionTest, IsRefusedToAnotherSitesPageWithATicket) {
    const std::string ticket = tickets_.issue("/events");
    for (const char* site : {"cross-site", "same-site"}) {
        EXPECT_EQ(
            statusOfTicket("/events", ticket, std::string("Sec-Fetch-Site: ") + site + "\r\n"),
            403);
    }
    EXPECT_EQ(statusOfTicket("/events", ticket, "Sec-Fetch-Site: same-origin\r\n"), 200);
}

TEST_F(AdmissionTest, OfACommandIsRefusedWithATicket) {
    const std::string ticket = tickets_.issue("/api/zoom");
    EXPECT_EQ(statusOf({"POST", "/api/zoom?ticket=" + ticket,
                        "Content-Length: 1\r\nContent-Type: application/json\r\n"}),
              403);
}

TEST_F(AdmissionTest, ToAnOpenAddressNeedsOnlyTheServersName) {
    EXPECT_EQ(statusOf({.headers = "", .isOpen = true}), 200);
    EXPECT_EQ(statusOf({.headers = "Origin: http://evil.example\r\n", .isOpen = true}), 403);
    EXPECT_EQ(statusOf({.headers = "Content-Length: 1\r\n", .isOpen = true}), 400);
}

TEST_F(AdmissionTest, IsForShortAddressesAndClearHeaders) {
    EXPECT_EQ(statusOf({.target = "/" + std::string(600, 'x')}), 414);
    EXPECT_EQ(statusOf({.headers = kWithToken + "Host: 127.0.0.1:8123\r\n"}), 400);
    EXPECT_EQ(statusOf({.headers = kWithToken + kWithToken}), 400);
    EXPECT_EQ(statusOf({.headers = "Origin: http://127.0.0.1:8123\r\nOrigin: x\r\n"}), 400);
    EXPECT_EQ(statusOf({.headers = kWithToken + "Origin: http://evil.example\r\n"}), 403);
}

TEST_F(AdmissionTest, IsForGetAndPost) {
    EXPECT_EQ(statusOf({.method = "HEAD"}), 200);
    EXPECT_EQ(statusOf({.method = "DELETE"}), 405);
    EXPECT_EQ(statusOf({.headers = kWithToken + "Content-Length: 1\r\n"}), 400);
    EXPECT_EQ(statusOf({.headers = kWithToken + "Transfer-Encoding: chunked\r\n"}), 400);
}

TEST_F(AdmissionTest, IsForShortJson) {
    const std::string json = "Content-Type: application/json\r\n";
    EXPECT_EQ(statusOfBody(json + "Content-Length: 100\r\n"), 200);
    EXPECT_EQ(statusOfBody(json + "Content-Length: 101\r\n"), 413);
    EXPECT_EQ(statusOfBody(json + "Content-Length: 99999999999999999999\r\n"), 413);
    EXPECT_EQ(statusOfBody(json + "Content-Length: -1\r\n"), 413);
    EXPECT_EQ(statusOfBody(json + "Content-Length: 0x10\r\n"), 413);
    EXPECT_EQ(statusOfBody(json), 411);
    EXPECT_EQ(statusOfBody(json + "Content-Length: 1\r\nContent-Length: 1\r\n"), 411);
    EXPECT_EQ(statusOfBody(json + "Content-Length: 1\r\nTransfer-Encoding: chunked\r\n"), 411);
    EXPECT_EQ(statusOfBody("Content-Length: 1\r\n"), 415);
}

} // namespace
} // namespace doccam::serve
