// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <backends/linux/xdg/XdgWorkspace.h>

#include <mutex>

namespace kw {

/// The workspace of a process on a desktop session, whose portal says what the user prefers
/// (org.freedesktop.portal.Settings).
class KW_EXPORT SessionWorkspace : public XdgWorkspace {
public:
    using XdgWorkspace::XdgWorkspace;

    /// Asks every three seconds at most, and half a minute after a portal that did not answer
    /// within a tenth of a second. Where the portal knows no preference, as XdgWorkspace.
    bool accessibilityDisplayShouldReduceMotion() final;

private:
    std::mutex m_mutex;
    bool m_reducesMotion = false;
    double m_nextQuestion = -1; // on the clock in use; below 0 at once
};

} // namespace kw
