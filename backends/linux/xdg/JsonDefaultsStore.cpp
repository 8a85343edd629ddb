// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/JsonDefaultsStore.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>
#include <backends/linux/posix/AtomicFile.h>
#include <backends/linux/posix/FileLock.h>
#include <backends/linux/xdg/BaseFolders.h>
#include <backends/linux/xdg/JsonMembers.h>

#include <array>
#include <ctime>
#include <filesystem>
#include <utility>

namespace kw {

namespace fs = std::filesystem;

namespace {

bool isFileName(const std::string& name) {
    return !name.empty() && name != "." && name != ".."
        && name.find_first_of(std::string_view("/\0", 2)) == name.npos;
}

std::string utcTime() {
    const std::time_t now = std::time(nullptr);
    std::tm parts {};
    ::gmtime_r(&now, &parts);
    std::array<char, 32> text;
    return {text.data(), std::strftime(text.data(), text.size(), "%Y%m%dT%H%M%SZ", &parts)};
}

/// Renames the file to a name that is free, which it stores. The file's lock must be held.
std::error_code setAside(const std::string& file, std::string& name) {
    const std::string stem = file + ".damaged-" + utcTime();
    name = stem;
    std::error_code error;
    for (int number = 2; fs::exists(fs::symlink_status(name, error)); ++number)
        name = stem + "-" + std::to_string(number);
    fs::rename(file, name, error);
    return error;
}

/// `damaged` becomes the new name of a damaged file.
std::error_code change(const std::string& file, const JsonChanges& changes, std::string& damaged) {
    std::error_code error;
    const FileLock lock(file + ".lock", error);
    if (error)
        return error;
    std::string text;
    error = readFile(file, text);
    const bool isNew = error == std::errc::no_such_file_or_directory;
    if (error && !isNew)
        return error;
    const auto former = isNew ? JsonMembers() : JsonMembers::parse(text);
    JsonMembers members = former.value_or(JsonMembers());
    if (!members.apply(changes))
        return {};
    if (!former) {
        if (const auto asideError = setAside(file, damaged))
            return asideError;
    }
    return replaceFile(file, members.text());
}

} // namespace

JsonDefaultsStore::JsonDefaultsStore(std::optional<std::string> folder)
    : m_folder(std::move(folder)) { }

PropertyMap JsonDefaultsStore::read(const std::string& domain) {
    const auto file = isFileName(domain) ? fileOf(domain) : std::nullopt;
    std::string text;
    if (!file || readFile(*file, text))
        return {};
    const auto members = JsonMembers::parse(text);
    return members ? members->values() : PropertyMap();
}

std::error_code JsonDefaultsStore::write(
    const std::string& domain, const DefaultsChanges& changes) {
    const auto texts = jsonChanges(changes);
    if (!texts || !isFileName(domain))
        return std::make_error_code(std::errc::invalid_argument);
    const auto file = fileOf(domain);
    if (!file)
        return std::make_error_code(std::errc::no_such_file_or_directory);
    if (const auto error = createFolders(fs::path(*file).parent_path().string()))
        return error;
    std::string damaged;
    const auto error = change(*file, *texts, damaged);
    // Not while the file is locked: a console may use settings itself.
    if (!damaged.empty())
        Platform::console().writeLine("The settings in " + *file + " are damaged. They are kept in "
            + lastPathComponent(damaged));
    return error;
}

std::optional<std::string> JsonDefaultsStore::fileOf(const std::string& domain) const {
    const auto folder = m_folder ? m_folder : baseFolders().configHome;
    if (!folder)
        return std::nullopt;
    return stringByAppendingPathComponent(*folder, domain + "/defaults.json");
}

} // namespace kw
