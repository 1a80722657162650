// Admitting or refusing requests by their head alone.
#pragma once

#include "serve/access/access.h"
#include "serve/http/plain_answer.h"
#include "serve/http/request_head.h"

#include <cstddef>
#include <optional>

namespace doccam::serve {

struct Gate {
    const AccessRules& rules;
    Tickets& tickets;
    bool isOpen = false;         // the address needs neither token nor ticket
    std::size_t longestBody = 0; // in bytes
};

// Why a request is refused before its body is read; none if it is admitted. Uses up the ticket that
// admits it.
std::optional<Refusal> refusalOf(const Gate& gate, const RequestHead& head);

} // namespace doccam::serve
