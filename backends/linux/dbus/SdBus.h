// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Owners of what the bus library hands out.
#pragma once

#include <systemd/sd-bus.h>

#include <memory>

namespace kw {

template <class T, T* (*unref)(T*)>
struct SdBusUnref {
    void operator()(T* object) const { unref(object); }
};

using Bus = std::unique_ptr<sd_bus, SdBusUnref<sd_bus, sd_bus_flush_close_unref>>;
using Message = std::unique_ptr<sd_bus_message, SdBusUnref<sd_bus_message, sd_bus_message_unref>>;

} // namespace kw
