// Parsing the head of an HTTP request, and passing it on.
#include "fuzz_target.h"
#include "serve/access/admission.h"

#include <string>
#include <string_view>

namespace {

using namespace doccam;
using namespace doccam::serve;

constexpr std::size_t kLongestBody = 1000;

void judgeHead(const RequestHead& head) {
    const AccessRules rules = rulesFor("127.0.0.1", 80, "token");
    Tickets tickets;
    const auto refusal = refusalOf({rules, tickets, false, kLongestBody}, head);
    const bool hasToken = head.header("authorization").ends_with(" token");
    test::require(refusal || (hasToken && head.header("host").size() > 1));
    if (refusal) {
        test::require(refusalBytes(*refusal, head).size() <= 1024);
    }
}

// The head passed on must parse again, to the same content.
void handOn(const RequestHead& head) {
    const std::string plain = plainHead(head);
    test::require(headLength(plain) == plain.size());
    const auto again = parseHead(plain);
    test::require(again && again->method == head.method && again->target == head.target &&
                  again->header("content-length") == head.header("content-length") &&
                  again->count("range") == 0);
    test::require(plainHead(*again) == plain);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const test::Bytes bytes(data, data + size);
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const auto length = headLength(text);
    const auto head = parseHead(text.substr(0, length.value_or(text.size())));
    test::require(!head || (length && canBeHead(text)));
    if (head) {
        judgeHead(*head);
        handOn(*head);
    }
    return 0;
}
