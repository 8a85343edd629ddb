// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/KWStartUpUtils.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>

#include <algorithm>
#include <vector>

namespace kw {

namespace {

std::string hostName() {
    auto name = NSBundle::mainBundle().objectForInfoDictionaryKey("CFBundleName");
    if (!name)
        throw NSException(NSInvalidArgumentException, "the application's name is not known");
    return *name;
}

bool isOf(const LoginItem& item, const std::string& name) {
    // Deliberate: no path holds the empty name.
    return item.path && !name.empty()
        && stringByExpandingTildeInPath(*item.path).find(name) != std::string::npos;
}

void removeItems(std::vector<LoginItem>& items, const std::string& name) {
    std::erase_if(items, [&](const LoginItem& item) { return isOf(item, name); });
}

} // namespace

std::error_code KWStartUpUtils::addApplicationToStartUpItems(bool hidden) {
    return addApplicationToStartUpItems(hostName(), hidden);
}

std::error_code KWStartUpUtils::addApplicationToStartUpItems(const std::string& name, bool hidden) {
    const std::string path = NSBundle::mainBundle().bundlePath();
    return Platform::loginItems().update([&](std::vector<LoginItem>& items) {
        removeItems(items, name);
        items.insert(items.begin(), {.path = path, .isHidden = hidden});
    });
}

std::error_code KWStartUpUtils::removeApplicationToLogin() {
    return removeApplicationToLogin(hostName());
}

std::error_code KWStartUpUtils::removeApplicationToLogin(const std::string& name) {
    return Platform::loginItems().update(
        [&](std::vector<LoginItem>& items) { removeItems(items, name); });
}

bool KWStartUpUtils::ApplicationIsStartUpItem() { return ApplicationIsStartUpItem(hostName()); }

bool KWStartUpUtils::ApplicationIsStartUpItem(const std::string& name) {
    return std::ranges::any_of(
        Platform::loginItems().read(), [&](const LoginItem& item) { return isOf(item, name); });
}

LoginLaunch KWStartUpUtils::wasStartedAtLogin() { return Platform::loginItems().launch(); }

} // namespace kw
