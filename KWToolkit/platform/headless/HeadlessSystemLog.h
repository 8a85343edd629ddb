// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/SystemLog.h>

#include <map>
#include <mutex>
#include <vector>

namespace kw {

/// A system log in memory. It outlives its clients.
class KW_EXPORT HeadlessSystemLog final : public SystemLog {
public:
    std::unique_ptr<SystemLogClient> open(
        const std::string& sender, const std::string& facility, bool connectImmediately) override;
    int openFile(const std::string& path) override;
    void closeFile(int descriptor) override;

    /// What happened, in order, a line each: "open Host daemon now", "Host 3 text", "add 3",
    /// "remove 3", "close Host", "open file /a/b", "close file 3".
    std::vector<std::string> takeEvents();

    /// The files that can be opened, each with the descriptor it gets. Others cannot be.
    std::map<std::string, int> files;

private:
    class Client;
    void note(const std::string& event);

    std::mutex m_mutex;
    std::vector<std::string> m_events;
};

} // namespace kw
