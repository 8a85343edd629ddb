// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <functional>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace kw {

/// An application that is started when the user logs in.
struct LoginItem {
    std::optional<std::string> path; ///< the bundle's; may begin with "~"
    bool isHidden = false; ///< whether the application hides after its launch
    /// What the desktop tells its entries apart by. Empty for a new one.
    std::string token = {};

    friend bool operator==(const LoginItem&, const LoginItem&) = default;
};

/// How the running application was started.
enum class LoginLaunch { none, shown, hidden };

/// The user's login items, in order. Used on any thread, and by several processes at once.
class KW_EXPORT LoginItems {
public:
    virtual ~LoginItems();

    /// Empty where there are none or they cannot be read.
    virtual std::vector<LoginItem> read() = 0;

    /// Hands the list to `change` and keeps what it leaves there. No other process changes the list
    /// meanwhile: others wait, so `change` is quick, and does not call this again. What is not
    /// changed stays as it is, to the byte. With an error nothing is lost, but not everything may
    /// have been done.
    virtual std::error_code update(
        const std::function<void(std::vector<LoginItem>& items)>& change) = 0;

    /// Whether this process was started by its login item, and as what.
    virtual LoginLaunch launch() const = 0;
};

/// Keeps nothing and says so.
class KW_EXPORT UnavailableLoginItems final : public LoginItems {
public:
    std::vector<LoginItem> read() override { return {}; }
    std::error_code update(const std::function<void(std::vector<LoginItem>&)>&) override;
    LoginLaunch launch() const override { return LoginLaunch::none; }
};

} // namespace kw
