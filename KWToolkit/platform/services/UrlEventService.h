// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>
#include <vector>

namespace kw {

/// Where the URLs of the host's scheme go from now on.
enum class UrlReception {
    here, ///< this process gets them
    elsewhere, ///< another process of the host gets them, and took those of this call
    unanswered, ///< another process gets them, but did not say in time that it took them
    argumentsOnly, ///< the desktop cannot send any; those of this call were delivered here
};

/// Brings the URLs that other programs open to this one, as get-URL events for
/// `NSAppleEventManager`. Main thread.
class KW_EXPORT UrlEventService {
public:
    virtual ~UrlEventService();

    /// Makes this process the one that gets the host's URLs, unless another one is already.
    /// Whether it is.
    virtual bool listen() = 0;

    /// Listens, and has these URLs handled: here, or by the process that is the one already, which
    /// is also called to the front. May wait for that process, but not for long; the backend says
    /// how long.
    virtual UrlReception receive(const std::vector<std::string>& urls) = 0;
};

/// Gets only what the host passes on itself.
class KW_EXPORT ArgumentUrlEventService final : public UrlEventService {
public:
    bool listen() override { return false; }
    UrlReception receive(const std::vector<std::string>& urls) override;
};

} // namespace kw
