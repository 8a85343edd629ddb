// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/LoginItems.h>

namespace kw {

/// Login items in memory. One thread.
class KW_EXPORT HeadlessLoginItems final : public LoginItems {
public:
    std::vector<LoginItem> read() override { return items.value_or(std::vector<LoginItem>()); }
    std::error_code update(const std::function<void(std::vector<LoginItem>&)>& change) override {
        if (!items)
            items.emplace();
        change(*items);
        return {};
    }
    LoginLaunch launch() const override { return launchedAs; }

    std::optional<std::vector<LoginItem>> items; ///< nothing until the list is first written
    LoginLaunch launchedAs = LoginLaunch::none;
};

} // namespace kw
