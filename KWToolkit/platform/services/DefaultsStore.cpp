// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/DefaultsStore.h>

namespace kw {

DefaultsStore::~DefaultsStore() = default;

std::error_code UnavailableDefaultsStore::write(const std::string&, const DefaultsChanges&) {
    return std::make_error_code(std::errc::function_not_supported);
}

} // namespace kw
