// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/NSResponder+ResponderChain.h>

namespace kw {

void insertIntoResponderChain(NSResponder& after, NSResponder& responder) {
    NSResponder* const next = after.nextResponder();
    if (next == &responder)
        return;
    NSResponder* const beyond = next ? next->nextResponder() : nullptr;
    after.setNextResponder(&responder);
    // A controlled view has passed it on to its controller, which stays the next one.
    const bool isPassedOn = next && after.nextResponder() == next;
    responder.setNextResponder(isPassedOn ? beyond : next);
}

} // namespace kw
