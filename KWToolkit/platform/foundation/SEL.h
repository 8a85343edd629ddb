// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace kw {

/// The name of a method, such as "toggle" or "open:".
///
/// A selector is interned: all selectors of one name are the same pointer, so comparing and hashing
/// them costs nothing. Names live until the process ends. Making one is safe on any thread.
class KW_EXPORT SEL {
public:
    /// No selector. It equals only itself, and no class has a method for it.
    SEL() = default;

    /// The selector of `name`. An empty name is a name like any other.
    explicit SEL(std::string_view name);

    /// The selector of `name` if there is one in the process already, else no selector. For names
    /// that come from elsewhere: selectors live until the process ends.
    static SEL existing(std::string_view name);

    /// The name, empty for no selector.
    const std::string& name() const;

    explicit operator bool() const { return m_name != nullptr; }
    friend bool operator==(SEL, SEL) = default;

    std::size_t hash() const { return reinterpret_cast<std::uintptr_t>(m_name) / alignof(void*); }

private:
    const std::string* m_name = nullptr;
};

} // namespace kw

template <>
struct std::hash<kw::SEL> {
    std::size_t operator()(kw::SEL selector) const noexcept { return selector.hash(); }
};
