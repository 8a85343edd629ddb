// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/XdgWorkspace.h>

#include <backends/linux/posix/DetachedProcess.h>
#include <backends/linux/xdg/ApplicationFolder.h>
#include <backends/linux/xdg/BaseFolders.h>
#include <backends/linux/xdg/InstalledApplications.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

namespace kw {

namespace fs = std::filesystem;

namespace {

constexpr int deepestProgram = 1; // the depth of a folder in the top folder is 0

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

std::error_code XdgWorkspace::moveToTrash(const std::string&, const std::string&) {
    return std::make_error_code(std::errc::function_not_supported);
}

bool XdgWorkspace::launchApplication(const std::string&) { return false; }

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

} // namespace kw
