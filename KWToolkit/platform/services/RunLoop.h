// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace kw {

/// The loop in which a thread waits for what happens next.
///
/// Everything but `perform` and `stop` is for the loop's own thread, and calls back on it, never
/// from within the scheduling call. An exception from a callback leaves `run`, with the loop
/// intact, where the loop is the toolkit's own; a host's loop that cannot let it through writes it
/// to the console.
class KW_EXPORT RunLoop {
public:
    enum class Timer : std::uint64_t { none = 0 };
    enum class Watch : std::uint64_t { none = 0 };

    virtual ~RunLoop();

    /// Calls `task` once after `delay` seconds; on the next pass for 0, less, or not a number.
    /// Timers due at the same time fire in the order in which they were made.
    virtual Timer callAfter(double delay, std::function<void()> task) = 0;

    /// Forgets a timer. One that has fired, or none, is ignored.
    virtual void cancel(Timer timer) = 0;

    /// Calls `readable` whenever the file descriptor has something to read, was closed by its peer,
    /// or failed. The descriptor is not owned and must be unwatched before it is closed. `none`
    /// where this loop cannot watch descriptors.
    virtual Watch watchDescriptor(int descriptor, std::function<void()> readable) = 0;
    virtual void unwatch(Watch watch) = 0;

    /// Calls `task` on the loop's thread on its next pass, in the order of the calls. Any thread.
    virtual void perform(std::function<void()> task) = 0;

    /// Runs until `stop`. Loops nest: `stop` ends the innermost.
    virtual void run() = 0;

    /// Ends the innermost `run`; before one has begun, ends the next at once. Any thread.
    virtual void stop() = 0;

    /// Waits up to `timeout` seconds for something to do, then does what is due. Returns whether
    /// anything was done.
    virtual bool runOnce(double timeout) = 0;
};

} // namespace kw
