// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/NSResponder+ResponderChain.h>

namespace kw {

void insertIntoResponderChain(NSResponder& after, NSResponder& responder) {
    NSResponder* const next = after.nextResponder();
    after.setNextResponder(&responder);
    responder.setNextResponder(next);
}

} // namespace kw
