// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/ViewLoader.h>

#include <KWToolkit/platform/ui/NSView.h>

namespace kw {

ViewLoader::~ViewLoader() = default;

std::shared_ptr<NSView> UnavailableViewLoader::loadView(
    const std::string&, const std::string&, std::string& reason) {
    reason = "there is nothing here that reads layout files";
    return nullptr;
}

} // namespace kw
