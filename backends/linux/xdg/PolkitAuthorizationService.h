// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/AuthorizationService.h>
#include <backends/linux/posix/Environment.h>

namespace kw {

/// Runs programs through polkit's pkexec, which is looked for in PATH; without it there is no
/// authorization.
///
/// kAuthorizationRightExecute is the right to run programs as root: it is granted where pkexec can
/// run one that does nothing. Without the flag kAuthorizationFlagInteractionAllowed it is granted
/// where polkit would not ask. Any other right is denied.
///
/// polkit asks for the administrator's password each time, so one right and two programs may be
/// three dialogs. A rule that answers polkit.Result.AUTH_ADMIN_KEEP for the action
/// "org.freedesktop.policykit.exec" makes that one dialog: all programs of an authorization are
/// started by one process of its own, for which polkit keeps the answer until the authorization
/// ends.
///
/// A program that polkit did not let run, because the user dismissed the dialog for one, has no
/// status to wait for; nor has one that exits with 126 or 127, as pkexec does then. A program that
/// is not waited for goes on after the authorization.
class KW_EXPORT PolkitAuthorizationService final : public AuthorizationService {
public:
    explicit PolkitAuthorizationService(Environment environment = processEnvironment);

    std::unique_ptr<Authorization> create() override;

private:
    Environment m_environment;
};

} // namespace kw
