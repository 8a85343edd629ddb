// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/foundation/SEL.h>

#include <any>
#include <functional>

namespace kw {

class NSObject;

/// An entry of a class's property table: how a property is read and written by its name. Entries
/// are made by `kw::property`; see NSKeyValueCoding.h for how values travel.
struct Property {
    SEL name;
    std::function<std::any(NSObject&)> get;
    std::function<void(NSObject&, const std::any&)> set; ///< empty where it cannot be written
};

} // namespace kw
