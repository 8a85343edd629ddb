// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/Workspace.h>

namespace kw {

Workspace::~Workspace() = default;

std::error_code UnavailableWorkspace::moveToTrash(const std::string&, const std::string&) {
    return std::make_error_code(std::errc::function_not_supported);
}

} // namespace kw
