// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/ViewLoader.h>
#include <KWToolkit/platform/ui/NSView.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace kw {

/// "Loads" what it was told: each name is the view made for it.
class HeadlessViewLoader final : public ViewLoader {
public:
    std::map<std::string, std::function<std::shared_ptr<NSView>()>> views;

    std::shared_ptr<NSView> loadView(
        const std::string& name, const std::string&, std::string& reason) override {
        const auto found = views.find(name);
        if (found != views.end())
            return found->second();
        reason = "no file " + name;
        return nullptr;
    }
};

} // namespace kw
