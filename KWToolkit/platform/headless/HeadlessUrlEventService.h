// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/UrlEventService.h>

namespace kw {

/// A desktop's URLs in memory.
class KW_EXPORT HeadlessUrlEventService final : public UrlEventService {
public:
    bool listen() override;
    UrlReception receive(const std::vector<std::string>& urls) override;

    /// Another program opens a URL. Whether it reached this process.
    bool open(const std::string& url);

    bool hasOtherProcess = false; ///< which gets the URLs
    std::vector<std::string> sentElsewhere;

private:
    bool m_isListening = false;
};

} // namespace kw
