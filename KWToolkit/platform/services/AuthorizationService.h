// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kw {

enum class AuthorizationStatus {
    granted,
    canceled, ///< the user did not want to
    denied, ///< the user may not, or there is nobody to ask
};

/// What an authorization may do to get its rights, in the platform's numbering.
inline constexpr std::uint32_t kAuthorizationFlagInteractionAllowed = 1;
inline constexpr std::uint32_t kAuthorizationFlagExtendRights = 2;
inline constexpr std::uint32_t kAuthorizationFlagPreAuthorize = 16;

/// The right to run programs as the system's administrator.
inline constexpr const char* kAuthorizationRightExecute = "system.privilege.admin";

/// One authorization. Its destructor gives its rights back.
class KW_EXPORT Authorization {
public:
    virtual ~Authorization();

    /// Asks for a right; may show a dialog, and waits for it.
    virtual AuthorizationStatus copyRights(const std::string& right, std::uint32_t flags) = 0;

    /// Starts a program with the administrator's rights. The program's path is absolute, and the
    /// arguments reach it as they are: no shell reads them. Waits for the one that was started
    /// before. False where it could not be started.
    virtual bool executeWithPrivileges(
        const std::string& program, const std::vector<std::string>& arguments) = 0;

    /// Waits for the program that was started last. Its status as POSIX `wait` tells it; nothing
    /// where there is none to wait for, or the right turned out to be missing.
    virtual std::optional<int> wait() = 0;
};

/// Lets programs do what the user alone may not. Used on the main thread.
class KW_EXPORT AuthorizationService {
public:
    virtual ~AuthorizationService();
    /// Null where the desktop has no such thing.
    virtual std::unique_ptr<Authorization> create() = 0;
};

/// Authorizes nothing.
class KW_EXPORT UnavailableAuthorizationService final : public AuthorizationService {
public:
    std::unique_ptr<Authorization> create() override { return nullptr; }
};

} // namespace kw
