// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/headless/HeadlessSystemLog.h>

#include <utility>

namespace kw {

class HeadlessSystemLog::Client final : public SystemLogClient {
public:
    Client(HeadlessSystemLog& systemLog, std::string sender)
        : m_log(systemLog)
        , m_sender(std::move(sender)) { }
    ~Client() override { m_log.note("close " + m_sender); }

    void log(SystemLogLevel level, std::string_view message) override {
        m_log.note(
            m_sender + " " + std::to_string(static_cast<int>(level)) + " " + std::string(message));
    }
    void addLogFile(int descriptor, const std::string&) override {
        m_log.note("add " + std::to_string(descriptor));
    }
    void removeLogFile(int descriptor) override {
        m_log.note("remove " + std::to_string(descriptor));
    }
    std::uint64_t unsentMessageCount() const override { return 0; }

private:
    HeadlessSystemLog& m_log;
    std::string m_sender;
};

std::unique_ptr<SystemLogClient> HeadlessSystemLog::open(
    const std::string& sender, const std::string& facility, bool connectImmediately) {
    note("open " + sender + " " + facility + (connectImmediately ? " now" : " later"));
    return std::make_unique<Client>(*this, sender);
}

int HeadlessSystemLog::openFile(const std::string& path) {
    note("open file " + path);
    const auto file = files.find(path);
    return file == files.end() ? -1 : file->second;
}

void HeadlessSystemLog::closeFile(int descriptor) {
    note("close file " + std::to_string(descriptor));
}

std::vector<std::string> HeadlessSystemLog::takeEvents() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_events, {});
}

void HeadlessSystemLog::note(const std::string& event) {
    const std::lock_guard lock(m_mutex);
    m_events.push_back(event);
}

} // namespace kw
