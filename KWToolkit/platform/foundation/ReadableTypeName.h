// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Private to the foundation.
#pragma once

#include <string>

namespace kw::detail {

/// "kw::NSView" for what `std::type_info::name` answers.
std::string readableTypeName(const char* typeName);

} // namespace kw::detail
