// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/LoginItems.h>

namespace kw {

LoginItems::~LoginItems() = default;

std::error_code UnavailableLoginItems::update(const std::function<void(std::vector<LoginItem>&)>&) {
    return std::make_error_code(std::errc::function_not_supported);
}

} // namespace kw
