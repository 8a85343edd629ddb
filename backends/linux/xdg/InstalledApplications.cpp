// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/InstalledApplications.h>

#include <backends/linux/xdg/BaseFolders.h>

#include <algorithm>
#include <limits>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace kw {

namespace fs = std::filesystem;

namespace {

bool isHidden(const DesktopFile& file) {
    return file.entry.value(DesktopEntry::mainGroup, "Hidden") == "true";
}

/// Each "-" may stand for a "/" in the entry's path below the folder.
std::optional<DesktopFile> desktopFileNamed(const fs::path& folder, const std::string& identifier) {
    if (auto file = readDesktopFile(folder / (identifier + ".desktop")))
        return file;
    for (auto dash = identifier.find('-'); dash != identifier.npos;
        dash = identifier.find('-', dash + 1)) {
        const fs::path below = folder / identifier.substr(0, dash);
        std::error_code error;
        if (dash == 0 || !fs::is_directory(below, error))
            continue;
        if (auto file = desktopFileNamed(below, identifier.substr(dash + 1)))
            return file;
    }
    return std::nullopt;
}

std::vector<fs::path> desktopFilesBelow(const fs::path& folder) {
    std::vector<fs::path> paths;
    std::error_code error;
    fs::recursive_directory_iterator file(
        folder, fs::directory_options::skip_permission_denied, error);
    for (const fs::recursive_directory_iterator end; !error && file != end; file.increment(error)) {
        std::error_code unreadable;
        if (file->path().extension() == ".desktop" && file->is_regular_file(unreadable))
            paths.push_back(file->path());
    }
    std::ranges::sort(paths);
    return paths;
}

std::string identifierOf(const fs::path& file, const fs::path& folder) {
    std::string identifier = file.lexically_relative(folder).replace_extension().string();
    std::ranges::replace(identifier, '/', '-');
    return identifier;
}

std::string asWritten(const std::string& text) { return text; }

std::string inSmallLetters(const std::string& written) {
    std::string text = written;
    std::ranges::transform(text, text.begin(),
        [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

} // namespace

std::vector<fs::path> applicationsFolders(const Environment& environment) {
    const BaseFolders base = baseFolders(environment);
    std::vector<fs::path> folders;
    if (base.dataHome)
        folders.push_back(fs::path(*base.dataHome) / "applications");
    for (const std::string& folder : base.dataFolders)
        folders.push_back(fs::path(folder) / "applications");
    return folders;
}

bool isEntryIdentifier(const std::string& identifier) {
    return !identifier.empty()
        && identifier.find_first_of(std::string_view("/\0", 2)) == identifier.npos;
}

std::optional<DesktopFile> installedEntry(
    const std::vector<fs::path>& folders, const std::string& identifier) {
    if (!isEntryIdentifier(identifier))
        return std::nullopt;
    for (const fs::path& folder : folders) {
        if (auto file = desktopFileNamed(folder, identifier))
            return isHidden(*file) ? std::nullopt : std::move(file);
    }
    return std::nullopt;
}

std::vector<DesktopFile> installedEntries(const std::vector<fs::path>& folders) {
    std::vector<DesktopFile> entries;
    std::set<std::string> identifiers;
    for (const fs::path& folder : folders) {
        for (const fs::path& path : desktopFilesBelow(folder)) {
            auto file = readDesktopFile(path);
            if (!file)
                continue;
            file->identifier = identifierOf(path, folder);
            if (identifiers.insert(file->identifier).second && !isHidden(*file))
                entries.push_back(std::move(*file));
        }
    }
    return entries;
}

const DesktopFile* entryOfWindows(const std::vector<DesktopFile>& entries,
    const std::string& instance, const std::string& windowClass) {
    const DesktopFile* best = nullptr;
    int bestRank = std::numeric_limits<int>::max();
    for (const DesktopFile& file : entries) {
        const std::string declared =
            file.entry.string(DesktopEntry::mainGroup, "StartupWMClass").value_or("");
        int rank = 0;
        for (const auto spelled : {&asWritten, &inSmallLetters}) {
            for (const std::string& own : {declared, file.identifier}) {
                for (const std::string& name : {instance, windowClass}) {
                    if (!name.empty() && spelled(own) == spelled(name) && rank < bestRank) {
                        best = &file;
                        bestRank = rank;
                    }
                    ++rank;
                }
            }
        }
    }
    return best;
}

} // namespace kw
