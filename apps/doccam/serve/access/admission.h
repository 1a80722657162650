// What becomes of a request, judged by its head alone.
#pragma once

#include "serve/access/access.h"
#include "serve/access/tickets.h"
#include "serve/http/plain_answer.h"
#include "serve/http/request_head.h"

#include <cstddef>
#include <optional>

namespace doccam::serve {

struct Gate {
    const AccessRules& rules;
    Tickets& tickets;
    bool isOpen = false;         // the address may be fetched without token and ticket
    std::size_t longestBody = 0; // in bytes
};

// Why a request is refused before its body is read; none when it is let in. The ticket that lets it
// in is used up.
std::optional<Refusal> refusalOf(const Gate& gate, const RequestHead& head);

} // namespace doccam::serve
