// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/SystemLog.h>

#include <atomic>

namespace kw {

namespace {

class UnavailableClient final : public SystemLogClient {
public:
    void log(SystemLogLevel, std::string_view) override {
        m_unsent.fetch_add(1, std::memory_order_relaxed);
    }
    void addLogFile(int, const std::string&) override { }
    void removeLogFile(int) override { }
    std::uint64_t unsentMessageCount() const override {
        return m_unsent.load(std::memory_order_relaxed);
    }

private:
    std::atomic<std::uint64_t> m_unsent = 0;
};

} // namespace

SystemLogClient::~SystemLogClient() = default;
SystemLog::~SystemLog() = default;

std::unique_ptr<SystemLogClient> UnavailableSystemLog::open(
    const std::string&, const std::string&, bool) {
    return std::make_unique<UnavailableClient>();
}

} // namespace kw
