#include "serve/access/admission.h"

#include "host/texts.h"

#include <cstdint>
#include <limits>
#include <string>

namespace doccam::serve {
namespace {

constexpr std::size_t kLongestTarget = 512;

Credentials credentialsOf(const RequestHead& head) {
    Credentials credentials{std::string(head.header("host")), std::nullopt,
                            std::string(head.header("authorization"))};
    if (head.count("origin") > 0) {
        credentials.origin = head.header("origin");
    }
    return credentials;
}

std::uint64_t announcedBytes(const RequestHead& head) {
    const auto bytes = host::parseNumber<std::uint64_t>(head.header("content-length"));
    return bytes.value_or(std::numeric_limits<std::uint64_t>::max());
}

std::optional<Refusal> refusalOfBody(const RequestHead& head, std::size_t longest) {
    if (head.count("transfer-encoding") > 0 || head.count("content-encoding") > 0 ||
        head.count("content-length") != 1) {
        return Refusal{411, "a command says its Content-Length and comes as it is"};
    }
    if (announcedBytes(head) > longest) {
        return Refusal{413, "the body is too long"};
    }
    if (!head.header("content-type").starts_with("application/json")) {
        return Refusal{415, "a command is application/json"};
    }
    return std::nullopt;
}

std::optional<Refusal> refusalOfForm(const RequestHead& head, std::size_t longestBody) {
    if (head.method == "POST") {
        return refusalOfBody(head, longestBody);
    }
    if (head.method != "GET" && head.method != "HEAD") {
        return Refusal{405, "GET and POST are all there is"};
    }
    if (head.count("transfer-encoding") > 0 || head.count("content-length") > 0) {
        return Refusal{400, "only a command has a body"};
    }
    return std::nullopt;
}

// Pages of other sites may not even try tickets.
bool comesFromOwnPage(const RequestHead& head) {
    const std::string_view site = head.header("sec-fetch-site");
    return site.empty() || site == "same-origin" || site == "none";
}

bool hasTicket(const Gate& gate, const RequestHead& head) {
    return head.method != "POST" && comesFromOwnPage(head) &&
           gate.tickets.redeem(head.query("ticket"), head.path());
}

std::optional<Refusal> refusalOfVisitor(const Gate& gate, const RequestHead& head) {
    switch (judge(gate.rules, credentialsOf(head))) {
    case Verdict::kForeignHost:
        return Refusal{403,
                       "the server does not go by this name; open the address that it printed"};
    case Verdict::kForeignOrigin:
        return Refusal{403, "another site may not use this server"};
    case Verdict::kNoToken:
        if (gate.isOpen || hasTicket(gate, head)) {
            break;
        }
        return Refusal{403, "open the address that the server printed: it holds the access token"};
    case Verdict::kAllowed:
        break;
    }
    return std::nullopt;
}

} // namespace

std::optional<Refusal> refusalOf(const Gate& gate, const RequestHead& head) {
    if (head.target.size() > kLongestTarget) {
        return Refusal{414, "the address is too long"};
    }
    if (head.count("host") > 1 || head.count("origin") > 1 || head.count("authorization") > 1) {
        return Refusal{400, "a header is repeated"};
    }
    if (auto refusal = refusalOfVisitor(gate, head)) {
        return refusal;
    }
    return refusalOfForm(head, gate.longestBody);
}

} // namespace doccam::serve
