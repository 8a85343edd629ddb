// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/foundation/BasicRunLoop.h>
#include <backends/linux/posix/FileDescriptor.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

namespace kw {

/// The loop of a thread whose host has none: waits in poll(2).
class KW_EXPORT PollRunLoop final : public BasicRunLoop {
public:
    /// Throws `std::system_error` when the process has no descriptor left.
    PollRunLoop();

    Watch watchDescriptor(int descriptor, std::function<void()> readable) override;
    void unwatch(Watch watch) override;

protected:
    double now() const override;
    bool wait(double seconds) override;
    void wake() override;

private:
    struct Watched {
        int descriptor;
        std::shared_ptr<const std::function<void()>> readable;
    };

    FileDescriptor m_wakeUp;
    std::map<Watch, Watched> m_watches;
    std::uint64_t m_lastWatch = 0;
    std::uint64_t m_lastWait = 0;
};

} // namespace kw
