// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/DatagramSocket.h>

#include <backends/linux/posix/FileDescriptor.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace kw {

namespace {

DatagramSocket::Outcome outcomeOf(ssize_t result) {
    using Outcome = DatagramSocket::Outcome;
    if (result >= 0)
        return Outcome::sent;
    switch (errno) {
    case EAGAIN:
    case EPERM:
    case EACCES:
    case ENOMEM:
    case ETOOMANYREFS:
        return Outcome::refused;
    case EMSGSIZE:
    case ENOBUFS: // what the kernel cannot put together in one piece
        return Outcome::tooLong;
    default:
        return Outcome::notConnected;
    }
}

/// Whether the descriptor still stands for a socket of this kind.
bool isDatagramSocket(int descriptor) {
    const auto is = [descriptor](int option, int expected) {
        int value = -1;
        socklen_t size = sizeof value;
        return ::getsockopt(descriptor, SOL_SOCKET, option, &value, &size) == 0
            && value == expected;
    };
    return is(SO_DOMAIN, AF_UNIX) && is(SO_TYPE, SOCK_DGRAM);
}

} // namespace

DatagramSocket::DatagramSocket(const std::string& path) {
    m_address.sun_family = AF_UNIX;
    // A path that is too long stays empty, and nobody reads there.
    if (path.size() < sizeof m_address.sun_path)
        std::memcpy(m_address.sun_path, path.data(), path.size());
}

DatagramSocket::~DatagramSocket() {
    if (const int descriptor = m_descriptor.load(); descriptor >= 0)
        ::close(descriptor);
}

bool DatagramSocket::connect() {
    const auto* const address = reinterpret_cast<const sockaddr*>(&m_address);
    int descriptor = m_descriptor.load(std::memory_order_acquire);
    if (descriptor >= 0 && ::connect(descriptor, address, sizeof m_address) == 0)
        return true;
    if (descriptor >= 0 && isDatagramSocket(descriptor))
        return false;
    // A program that becomes a daemon closes what it has inherited. The number may be someone
    // else's by now, so it is given up and not closed.
    descriptor = openedAnewUnless(descriptor);
    return descriptor >= 0 && ::connect(descriptor, address, sizeof m_address) == 0;
}

int DatagramSocket::openedAnewUnless(int former) {
    const int made = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (made < 0 || m_descriptor.compare_exchange_strong(former, made))
        return made;
    ::close(made); // another thread was first
    return former;
}

DatagramSocket::Outcome DatagramSocket::send(std::string_view bytes) {
    return outcomeOf(::send(m_descriptor.load(std::memory_order_relaxed), bytes.data(),
        bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL));
}

DatagramSocket::Outcome DatagramSocket::sendAsFile(std::string_view bytes) {
    const FileDescriptor file(::memfd_create("log-entry", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    constexpr int seals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL;
    if (file.get() < 0 || writeAll(file.get(), bytes)
        || ::fcntl(file.get(), F_ADD_SEALS, seals) != 0)
        return Outcome::refused;

    alignas(cmsghdr) char room[CMSG_SPACE(sizeof(int))] {};
    msghdr message {};
    message.msg_control = room;
    message.msg_controllen = sizeof room;
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof(int));
    const int descriptor = file.get();
    std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
    return outcomeOf(::sendmsg(
        m_descriptor.load(std::memory_order_relaxed), &message, MSG_DONTWAIT | MSG_NOSIGNAL));
}

} // namespace kw
