// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

namespace kw::test {

/// The environment variables that a test says.
struct FakeEnvironment : std::map<std::string, std::string> {
    using map::map;
    std::string operator()(const char* name) const {
        const auto found = find(name);
        return found == end() ? "" : found->second;
    }
};

} // namespace kw::test
