// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/ProcessService.h>

namespace kw {

ProcessService::~ProcessService() = default;

std::error_code UnavailableProcessService::launch(
    const std::string&, const std::vector<std::string>&) {
    return std::make_error_code(std::errc::function_not_supported);
}

} // namespace kw
