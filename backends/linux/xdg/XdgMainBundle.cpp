// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/XdgMainBundle.h>

#include <backends/linux/posix/LocaleName.h>
#include <backends/linux/xdg/ApplicationFolder.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace kw {

namespace fs = std::filesystem;

namespace {

std::string runningProgram() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).string();
}

fs::path withoutDeletedMark(const std::string& path) {
    constexpr std::string_view mark = " (deleted)";
    std::error_code error;
    const bool isMarked = path.ends_with(mark) && !fs::exists(path, error);
    return path.substr(0, path.size() - (isMarked ? mark.size() : 0));
}

bool isIn(const fs::path& path, const fs::path& folder) {
    std::error_code error;
    const fs::path whole = fs::weakly_canonical(path, error);
    const fs::path start = fs::canonical(folder, error);
    return !error && std::ranges::mismatch(start, whole).in1 == start.end();
}

void describe(BundleInfo& info, const std::optional<DesktopFile>& file) {
    if (!file)
        return;
    info.identifier = file->identifier;
    const auto take = [&](std::string& field, std::string_view key) {
        if (auto text = file->entry.string(DesktopEntry::mainGroup, key); text && !text->empty())
            field = std::move(*text);
    };
    take(info.name, "Name");
    take(info.version, "X-AppImage-Version");
    take(info.version, "X-KWToolkit-Version");
}

BundleInfo infoOf(const fs::path& program, const Environment& environment) {
    const std::string name = program.filename().string();
    BundleInfo info {.name = name,
        .identifier = name,
        .executable = name,
        .bundlePath = program.string(),
        .executablePath = program.string()};

    std::error_code error;
    const fs::path image = environment("APPIMAGE");
    const fs::path mounted = environment("APPDIR");
    if (image.is_absolute() && fs::is_regular_file(image, error)
        && (mounted.empty() || isIn(program, mounted))) {
        info.bundlePath = image.string();
        if (!mounted.empty()) {
            info.resourcePath = (mounted / "Resources").string();
            describe(info, desktopFileIn(mounted, name));
        }
    } else if (const auto folder = applicationFolderAbove(program)) {
        info.bundlePath = folder->string();
        info.resourcePath = (*folder / "Resources").string();
        info.name = folder->stem().string();
        const auto beside = desktopFileIn(program.parent_path(), name);
        describe(info, beside ? beside : desktopFileIn(*folder, name));
    }
    return info;
}

} // namespace

XdgMainBundle::XdgMainBundle()
    : XdgMainBundle(runningProgram(), processEnvironment) { }

XdgMainBundle::XdgMainBundle(const std::string& executablePath, const Environment& environment)
    : m_info(infoOf(withoutDeletedMark(executablePath), environment))
    , m_languages(kw::preferredLanguages(environment)) { }

} // namespace kw
