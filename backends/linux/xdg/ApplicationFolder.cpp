// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/ApplicationFolder.h>

#include <backends/linux/posix/AtomicFile.h>
#include <backends/linux/xdg/BaseFolders.h>

#include <unistd.h>

#include <algorithm>
#include <system_error>
#include <vector>

namespace kw {

namespace fs = std::filesystem;

namespace {

std::string programIn(const DesktopEntry& entry, std::string_view key) {
    const auto value = entry.string(DesktopEntry::mainGroup, key);
    if (!value || key == "TryExec")
        return value.value_or("");
    const auto arguments = splitExec(*value);
    if (!arguments)
        return "";
    auto program = arguments->begin();
    if (program != arguments->end() && fs::path(program->text).filename() == "env")
        program = std::find_if(program + 1, arguments->end(),
            [](const ExecArgument& word) { return word.text.find('=') == word.text.npos; });
    const bool isPlain = program != arguments->end() && program->fieldCodes.empty();
    return isPlain ? program->text : "";
}

bool starts(const DesktopEntry& entry, const std::string& programName) {
    return std::ranges::any_of(std::initializer_list<std::string_view> {"TryExec", "Exec"},
        [&](auto key) { return fs::path(programIn(entry, key)).filename() == programName; });
}

} // namespace

bool isApplicationFolderName(const fs::path& name) { return name.extension() == ".app"; }

std::optional<fs::path> applicationFolderAbove(const fs::path& program) {
    for (fs::path folder = program.parent_path(); folder.has_relative_path();
        folder = folder.parent_path()) {
        if (isApplicationFolderName(folder.filename()))
            return folder;
    }
    return std::nullopt;
}

std::optional<DesktopFile> readDesktopFile(const fs::path& path) {
    std::string text;
    std::error_code error;
    if (!fs::is_regular_file(path, error) || readFile(path.string(), text))
        return std::nullopt;
    return DesktopFile {path.stem().string(), DesktopEntry(text)};
}

std::optional<DesktopFile> desktopFileIn(const fs::path& folder, const std::string& programName) {
    std::error_code error;
    std::vector<fs::path> paths;
    for (fs::directory_iterator file(folder, error), end; !error && file != end;
        file.increment(error)) {
        if (file->path().extension() == ".desktop")
            paths.push_back(file->path());
    }
    std::ranges::sort(paths);

    std::optional<DesktopFile> first;
    for (const fs::path& path : paths) {
        auto file = readDesktopFile(path);
        if (file && starts(file->entry, programName))
            return file;
        if (!first)
            first = std::move(file);
    }
    return first;
}

std::string programOf(const DesktopEntry& entry) {
    const std::string program = programIn(entry, "TryExec");
    return program.empty() ? programIn(entry, "Exec") : program;
}

bool isProgram(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error) && ::access(path.c_str(), X_OK) == 0;
}

std::optional<fs::path> findProgram(const std::string& program, const std::string& searchPath) {
    std::vector<fs::path> candidates;
    if (program.starts_with('/'))
        candidates.push_back(program);
    else if (!program.empty() && program.find('/') == program.npos)
        for (const std::string& folder : absolutePaths(searchPath))
            candidates.push_back(fs::path(folder) / program);
    const auto found = std::ranges::find_if(candidates, isProgram);
    return found == candidates.end() ? std::nullopt : std::optional(*found);
}

std::optional<std::string> applicationOf(const DesktopEntry& entry, const std::string& searchPath) {
    const auto program = findProgram(programOf(entry), searchPath);
    if (!program)
        return std::nullopt;
    std::error_code error;
    return applicationFolderAbove(fs::canonical(*program, error)).value_or(*program).string();
}

} // namespace kw
