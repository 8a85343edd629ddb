// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/XdgWorkspace.h>

#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>
#include <backends/linux/posix/AtomicFile.h>
#include <backends/linux/posix/DetachedProcess.h>
#include <backends/linux/xdg/ApplicationFolder.h>
#include <backends/linux/xdg/BaseFolders.h>
#include <backends/linux/xdg/DesktopEntry.h>
#include <backends/linux/xdg/InstalledApplications.h>
#include <backends/linux/xdg/OpenProgram.h>
#include <backends/linux/xdg/Trash.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace kw {

namespace fs = std::filesystem;

namespace {

constexpr int deepestProgram = 1; // the depth of a folder in the top folder is 0

struct AnimationSetting {
    const char* file; // in the config home
    const char* group;
    const char* key;
};
constexpr AnimationSetting animationSettings[] {
    {"kdeglobals", "KDE", "AnimationDurationFactor"},
    {"gtk-4.0/settings.ini", "Settings", "gtk-enable-animations"},
    {"gtk-3.0/settings.ini", "Settings", "gtk-enable-animations"},
};

bool isOff(std::string_view value) {
    double number = 0;
    const auto read = std::from_chars(value.data(), value.data() + value.size(), number);
    const bool isNumber = read.ec == std::errc() && read.ptr == value.data() + value.size();
    return isNumber ? number <= 0 : value == "false" || value == "FALSE";
}

bool isFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

bool holdsProgram(const fs::path& folder) {
    std::error_code error;
    for (fs::directory_iterator file(folder, error), end; !error && file != end;
        file.increment(error)) {
        if (isProgram(file->path()))
            return true;
    }
    return false;
}

bool hasEntry(const fs::path& applicationFolder, const std::string& entryName) {
    if (isFile(applicationFolder / entryName))
        return true;
    std::error_code error;
    fs::recursive_directory_iterator file(
        applicationFolder, fs::directory_options::skip_permission_denied, error);
    for (const fs::recursive_directory_iterator end; !error && file != end; file.increment(error)) {
        if (file->is_directory(error) && isFile(file->path() / entryName)
            && holdsProgram(file->path()))
            return true;
        if (file.depth() >= deepestProgram)
            file.disable_recursion_pending();
    }
    return false;
}

std::optional<std::string> applicationFolderIn(
    const fs::path& folder, const std::string& entryName) {
    std::vector<fs::path> folders;
    std::error_code error;
    for (fs::directory_iterator file(folder, error), end; !error && file != end;
        file.increment(error)) {
        if (isApplicationFolderName(file->path().filename()))
            folders.push_back(file->path());
    }
    std::ranges::sort(folders);
    const auto found = std::ranges::find_if(
        folders, [&](const fs::path& candidate) { return hasEntry(candidate, entryName); });
    return found == folders.end() ? std::nullopt : std::optional(found->string());
}

} // namespace

XdgWorkspace::XdgWorkspace(Environment environment, std::string sharedApplications)
    : m_environment(std::move(environment))
    , m_sharedApplications(std::move(sharedApplications)) { }

bool XdgWorkspace::openURL(const std::string& url) {
    // What begins with a dash would be an option, and is no URL.
    return !url.starts_with('-') && !startDetached({"xdg-open", url});
}

std::error_code XdgWorkspace::moveToTrash(const std::string& folder, const std::string& name) {
    return kw::moveToTrash(folder, name, m_environment);
}

bool XdgWorkspace::launchApplication(const std::string& identifier) {
    if (identifier.empty())
        return false;
    const BundleInfo running = NSBundle::mainBundle().info();
    const auto path = identifier == running.identifier && !running.bundlePath.empty()
        ? std::optional(running.bundlePath)
        : applicationPath(identifier);
    std::error_code error;
    if (!path || !fs::exists(*path, error))
        return false;
    const std::string folder = folderWithOpenProgram(error, m_environment);
    return !error && !startDetached({folder + "/open", *path});
}

std::optional<std::string> XdgWorkspace::applicationPath(const std::string& identifier) {
    if (!isEntryIdentifier(identifier))
        return std::nullopt;
    std::vector<fs::path> applicationFolders {m_sharedApplications};
    if (const auto home = baseFolders(m_environment).home)
        applicationFolders.insert(applicationFolders.begin(), fs::path(*home) / "Applications");
    for (const fs::path& folder : applicationFolders) {
        if (auto found = applicationFolderIn(folder, identifier + ".desktop"))
            return found;
    }
    const auto file = installedEntry(applicationsFolders(m_environment), identifier);
    return file ? applicationOf(file->entry, m_environment("PATH")) : std::nullopt;
}

bool XdgWorkspace::accessibilityDisplayShouldReduceMotion() {
    const auto folder = baseFolders(m_environment).configHome;
    return folder && std::ranges::any_of(animationSettings, [&](const AnimationSetting& setting) {
        std::string text;
        if (readFile(stringByAppendingPathComponent(*folder, setting.file), text))
            return false;
        const auto value = DesktopEntry(text).string(setting.group, setting.key);
        return value && isOff(*value);
    });
}

} // namespace kw
