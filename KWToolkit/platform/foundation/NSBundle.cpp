// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/NSBundle.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>

#include <fstream>
#include <sstream>
#include <utility>

namespace kw {

namespace {

constexpr std::pair<std::string_view, std::string BundleInfo::*> informationKeys[] {
    {"CFBundleName", &BundleInfo::name},
    {"CFBundleIdentifier", &BundleInfo::identifier},
    {"CFBundleShortVersionString", &BundleInfo::version},
    {"CFBundleExecutable", &BundleInfo::executable},
};

constexpr std::string BundleInfo::* fields[] {&BundleInfo::name, &BundleInfo::identifier,
    &BundleInfo::version, &BundleInfo::executable, &BundleInfo::bundlePath,
    &BundleInfo::executablePath, &BundleInfo::resourcePath};

} // namespace

NSBundle& NSBundle::mainBundle() {
    static auto& bundle = *new NSBundle;
    return bundle;
}

std::optional<std::string> NSBundle::objectForInfoDictionaryKey(std::string_view key) const {
    for (const auto& [name, field] : informationKeys) {
        if (name != key)
            continue;
        std::string value = info().*field;
        return value.empty() ? std::nullopt : std::optional(std::move(value));
    }
    return std::nullopt;
}

BundleInfo NSBundle::info() const {
    BundleInfo info = Platform::mainBundle().info();
    const std::lock_guard lock(m_mutex);
    for (const auto field : fields) {
        if (!(m_declared.*field).empty())
            info.*field = m_declared.*field;
    }
    return info;
}

void NSBundle::declare(BundleInfo values) {
    const std::lock_guard lock(m_mutex);
    m_declared = std::move(values);
}

std::string NSBundle::localizedStringForKey(
    const std::string& key, const std::string& value, const std::string& table) const {
    const std::string resources = info().resourcePath;
    auto languages = Platform::mainBundle().preferredLanguages();
    languages.emplace_back("Base");
    if (resources.empty())
        languages.clear(); // what is in the working folder is nobody's resources
    const std::string file = (table.empty() ? "Localizable" : table) + ".strings";
    for (const std::string& language : languages) {
        const std::string folder = stringByAppendingPathComponent(resources, language + ".lproj");
        const StringsTable& texts = tableAt(stringByAppendingPathComponent(folder, file));
        if (const auto text = texts.find(key); text != texts.end())
            return text->second;
    }
    return value.empty() ? key : value;
}

const StringsTable& NSBundle::tableAt(const std::string& path) const {
    const std::lock_guard lock(m_mutex);
    const auto [entry, isNew] = m_tables.try_emplace(path);
    if (isNew) {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        entry->second = parseStringsTable(text.view());
    }
    return entry->second;
}

} // namespace kw
