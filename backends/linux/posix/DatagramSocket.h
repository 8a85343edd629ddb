// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <string>
#include <string_view>

#include <sys/un.h>

namespace kw {

/// A connection to a daemon's datagram socket that never waits. Used by several threads at once
/// without a lock, and by parent and child after a fork.
class DatagramSocket {
public:
    enum class Outcome {
        sent,
        refused, ///< the reader is too slow, or this cannot be sent
        tooLong, ///< for a datagram
        notConnected, ///< there was no reader, or it has gone
    };

    explicit DatagramSocket(const std::string& path);
    ~DatagramSocket();
    DatagramSocket(const DatagramSocket&) = delete;
    DatagramSocket& operator=(const DatagramSocket&) = delete;

    /// Connects, or connects again. False where nobody reads at the path.
    bool connect();
    Outcome send(std::string_view bytes);
    /// Sends the bytes as the content of a sealed memory file, whose descriptor is all that the
    /// datagram carries.
    Outcome sendAsFile(std::string_view bytes);

private:
    int openedAnewUnless(int descriptor);

    std::atomic<int> m_descriptor = -1;
    sockaddr_un m_address {};
};

} // namespace kw
