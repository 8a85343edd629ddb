// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/logging/GDASLLog.h>

#include <KWToolkit/platform/Platform.h>

#include <cstdio>

namespace kw {

namespace {

/// What printing a format without arguments gives. `room` holds the text where it differs.
std::string_view printed(std::string_view format, std::string& room) {
    auto percent = format.find("%%");
    if (percent == format.npos)
        return format;
    std::size_t begin = 0;
    for (; percent != format.npos; percent = format.find("%%", begin)) {
        room += format.substr(begin, percent + 1 - begin);
        begin = percent + 2;
    }
    return room += format.substr(begin);
}

} // namespace

Class& GDASLLog::classObject() {
    static auto& object = *new Class("GDASLLog", NSObject::classObject());
    return object;
}

GDASLLog::GDASLLog(const std::string& sender, const std::string& facility, bool connectImmediately)
    : m_manager(GDASLLogManager::sharedInstance())
    , m_client(Platform::systemLog().open(sender, facility, connectImmediately)) { }

GDASLLog::~GDASLLog() { close(); }

void GDASLLog::send(SystemLogLevel level, std::string_view message) {
    if (!m_client)
        return;
    std::string room;
    const std::string_view text = printed(message, room);
    // Deliberate: not emergency.
    const bool isPrinted = level == SystemLogLevel::alert || level == SystemLogLevel::critical;
    if (isPrinted && logToStdOut())
        std::fwrite(text.data(), 1, text.size(), stdout);
    m_client->log(level, text);
}

std::int32_t GDASLLog::setLogFile(const std::string& path) {
    SystemLog& systemLog = Platform::systemLog();
    if (m_fd >= 0) {
        if (m_client)
            m_client->removeLogFile(m_fd);
        // Deliberate: the first time this is standard input.
        systemLog.closeFile(m_fd);
    }
    m_fd = systemLog.openFile(path);
    if (m_fd < 0)
        return m_fd;
    if (m_client)
        m_client->addLogFile(m_fd, path);
    return 0;
}

void GDASLLog::close() {
    if (!m_client)
        return;
    m_client->removeLogFile(m_fd);
    m_client.reset();
}

std::uint64_t GDASLLog::unsentMessageCount() const {
    return m_client ? m_client->unsentMessageCount() : 0;
}

std::string messageFromText(std::string_view text) {
    std::string message;
    message.reserve(text.size());
    for (const char byte : text)
        message.append(byte == '%' ? 2 : 1, byte);
    return message;
}

} // namespace kw
