// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitLinux/UrlScheme.h>

#include <KWToolkit/platform/foundation/NSBundle.h>
#include <backends/linux/xdg/BaseFolders.h>
#include <backends/linux/xdg/DesktopEntry.h>
#include <backends/linux/xdg/HostEntry.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace kw {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view mainGroup = DesktopEntry::mainGroup;
constexpr std::string_view madeHereKey = "X-KWToolkit-Made"; // nobody else's file

/// In small letters; nothing where it is no scheme.
std::optional<std::string> canonicalScheme(std::string scheme) {
    const auto isLetter = [](char c) { return c >= 'a' && c <= 'z'; };
    const auto isPart = [&](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
    };
    for (char& c : scheme)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    const bool isValid =
        !scheme.empty() && isLetter(scheme[0]) && std::ranges::all_of(scheme, isPart);
    return isValid ? std::optional(std::move(scheme)) : std::nullopt;
}

struct Paths {
    std::string entryName;
    std::string entry;
    std::string associations;
};

/// Nothing where there is no home, or no identifier to name a file with.
std::optional<Paths> paths() {
    const auto name = hostEntryName();
    const BaseFolders folders = baseFolders();
    if (!name || !folders.dataHome || !folders.configHome)
        return std::nullopt;
    return Paths {*name, *folders.dataHome + "/applications/" + *name,
        *folders.configHome + "/mimeapps.list"};
}

DesktopEntry startingEntry(const std::string& entryName) {
    for (const std::string& folder : baseFolders().dataFolders) {
        std::optional<DesktopEntry> installed;
        const fs::path path = fs::path(folder) / "applications" / entryName;
        if (!readEntry(path.string(), installed) && installed)
            return *installed;
    }
    DesktopEntry entry("");
    entry.setValue(mainGroup, "Type", "Application");
    entry.setValue(mainGroup, "Name", escapedDesktopString(NSBundle::mainBundle().info().name));
    // It is for links, not for menus.
    entry.setValue(mainGroup, "NoDisplay", "true");
    entry.setValue(mainGroup, madeHereKey, "true");
    return entry;
}

bool takesURL(const DesktopEntry& entry, const std::string& programPath) {
    const auto exec = entry.string(mainGroup, "Exec");
    const auto arguments = exec ? splitExec(*exec) : std::nullopt;
    return arguments && !arguments->empty() && arguments->front().text == programPath
        && std::ranges::any_of(*arguments, [](const ExecArgument& argument) {
               return !argument.fieldCodes.empty()
                   && (argument.text == "%u" || argument.text == "%U");
           });
}

std::vector<std::string> listOf(
    const DesktopEntry& entry, std::string_view group, std::string_view key) {
    return DesktopEntry::list(entry.value(group, key).value_or(""));
}

void setList(DesktopEntry& entry, std::string_view group, const std::string& key,
    const std::vector<std::string>& parts) {
    if (parts.empty())
        entry.removeKey(group, key);
    else
        entry.setValue(group, key, DesktopEntry::listValue(parts));
}

/// Adds the part to a list that lacks it, or takes it away.
void setInList(DesktopEntry& entry, std::string_view group, const std::string& key,
    const std::string& part, bool isIn) {
    auto parts = listOf(entry, group, key);
    std::erase(parts, part);
    if (isIn)
        parts.push_back(part);
    setList(entry, group, key, parts);
}

constexpr std::string_view defaultsGroup = "Default Applications";
constexpr std::string_view addedGroup = "Added Associations";

std::error_code associate(const Paths& files, const std::string& type, bool isHandler) {
    std::optional<DesktopEntry> former;
    if (const auto error = readEntry(files.associations, former))
        return error;
    DesktopEntry list = former.value_or(DesktopEntry(""));
    const std::string before = list.text();
    const auto chosen = listOf(list, defaultsGroup, type);
    const bool isOurs = std::ranges::find(chosen, files.entryName) != chosen.end();
    if (isHandler ? chosen.empty() : isOurs)
        setInList(list, defaultsGroup, type, files.entryName, isHandler);
    const auto added = listOf(list, addedGroup, type);
    if (isHandler != (std::ranges::find(added, files.entryName) != added.end()))
        setInList(list, addedGroup, type, files.entryName, isHandler);
    return list.text() == before ? std::error_code() : writeEntry(files.associations, list);
}

} // namespace

std::error_code installUrlScheme(const std::string& scheme) {
    const auto canonical = canonicalScheme(scheme);
    const auto files = paths();
    const std::string programPath = hostProgram();
    if (!canonical || !files || !programPath.starts_with('/'))
        return std::make_error_code(std::errc::invalid_argument);
    const std::string type = "x-scheme-handler/" + *canonical;

    std::optional<DesktopEntry> former;
    if (const auto error = readEntry(files->entry, former))
        return error;
    DesktopEntry entry = former ? *former : startingEntry(files->entryName);
    if (!takesURL(entry, programPath)) {
        entry.setValue(
            mainGroup, "Exec", escapedDesktopString(quotedExecArgument(programPath) + " %u"));
        entry.removeKey(mainGroup, "TryExec");
    }
    const auto types = listOf(entry, mainGroup, "MimeType");
    if (std::ranges::find(types, type) == types.end())
        setInList(entry, mainGroup, "MimeType", type, true);
    if (!former || former->text() != entry.text()) {
        if (const auto error = writeEntry(files->entry, entry))
            return error;
    }
    return associate(*files, type, true);
}

std::error_code removeUrlScheme(const std::string& scheme) {
    const auto canonical = canonicalScheme(scheme);
    const auto files = paths();
    if (!canonical || !files)
        return std::make_error_code(std::errc::invalid_argument);
    const std::string type = "x-scheme-handler/" + *canonical;

    std::optional<DesktopEntry> entry;
    if (const auto error = readEntry(files->entry, entry))
        return error;
    if (entry) {
        const std::string before = entry->text();
        setInList(*entry, mainGroup, "MimeType", type, false);
        const bool isNeeded = entry->value(mainGroup, "MimeType").has_value()
            || !entry->value(mainGroup, madeHereKey).has_value();
        std::error_code error;
        if (!isNeeded)
            fs::remove(files->entry, error);
        else if (entry->text() != before)
            error = writeEntry(files->entry, *entry);
        if (error)
            return error;
    }
    return associate(*files, type, false);
}

} // namespace kw
