// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSNib.h>

#include <KWToolkit/platform/Platform.h>

#include <map>
#include <utility>

namespace kw {

namespace {

using Factories = std::map<std::string, ViewFactory>;

Factories& descriptions() {
    static auto& value = *new Factories;
    return value;
}

Factories& classes() {
    static auto& value = *new Factories;
    return value;
}

} // namespace

void registerViewDescription(std::string name, ViewFactory make) {
    descriptions()[std::move(name)] = std::move(make);
}

void registerViewClass(std::string className, ViewFactory make) {
    classes()[std::move(className)] = std::move(make);
}

std::shared_ptr<NSView> makeViewOfClass(const std::string& className) {
    const auto found = classes().find(className);
    return found != classes().end() && found->second ? found->second() : nullptr;
}

std::shared_ptr<NSView> loadViewDescription(
    const std::string& name, const std::string& folder, std::string& reason) {
    if (const auto found = descriptions().find(name);
        found != descriptions().end() && found->second) {
        auto view = found->second();
        if (!view)
            reason = "the registered description makes no view";
        return view;
    }
    return Platform::viewLoader().loadView(name, folder, reason);
}

} // namespace kw
