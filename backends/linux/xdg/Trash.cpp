// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/Trash.h>

#include <backends/linux/posix/AtomicFile.h>
#include <backends/linux/posix/Folders.h>
#include <backends/linux/xdg/BaseFolders.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <new>
#include <optional>
#include <string_view>

namespace kw {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view infoSuffix = ".trashinfo";
constexpr int mostNames = 100'000; // tried for one entry

std::error_code failed(std::errc error) { return std::make_error_code(error); }

/// A Trash that is there, and what its entries' paths are relative to; empty where they are
/// absolute.
struct Trash {
    FileDescriptor folder;
    fs::path top;
};

/// Within a mount files can be renamed; another mount of the same device is another mount.
using Mount = std::array<std::uint64_t, 3>;

std::optional<Mount> mountOf(const fs::path& path) {
    struct statx status;
    if (::statx(AT_FDCWD, path.c_str(), 0, STATX_MNT_ID, &status) != 0)
        return std::nullopt;
    return Mount {status.stx_dev_major, status.stx_dev_minor,
        (status.stx_mask & STATX_MNT_ID) ? status.stx_mnt_id : 0};
}

/// The mount that a folder is in, or will be once it is made.
std::optional<Mount> futureMountOf(fs::path path) {
    for (;; path = path.parent_path()) {
        const auto mount = mountOf(path);
        if (mount || path == path.parent_path())
            return mount;
    }
}

/// Opens a folder of the user's own that nobody has put a link in place of; makes it where it is
/// missing.
FileDescriptor ownFolder(int parent, const std::string& name) {
    if (::mkdirat(parent, name.c_str(), 0700) != 0 && errno != EEXIST)
        return FileDescriptor();
    FileDescriptor folder = openFolderIn(parent, name.c_str());
    struct stat status;
    if (folder.get() < 0 || ::fstat(folder.get(), &status) != 0)
        return FileDescriptor();
    if (status.st_uid != ::getuid()) {
        errno = EPERM;
        return FileDescriptor();
    }
    return folder;
}

/// The user's folder in the Trash that an administrator has made for all users, if it is as it has
/// to be.
FileDescriptor folderInSharedTrash(int top, const std::string& user) {
    const FileDescriptor shared = openFolderIn(top, ".Trash");
    struct stat status;
    if (shared.get() < 0 || ::fstat(shared.get(), &status) != 0 || !(status.st_mode & S_ISVTX))
        return FileDescriptor();
    return ownFolder(shared.get(), user);
}

std::error_code openTrash(const fs::path& folder, const Environment& environment, Trash& trash) {
    const auto mount = mountOf(folder);
    if (!mount)
        return lastError();
    if (const auto dataHome = baseFolders(environment).dataHome) {
        const std::string home = *dataHome + "/Trash";
        if (futureMountOf(home) == mount) {
            if (const auto error = createFolders(home))
                return error;
            trash.folder = openFolder(home);
            return trash.folder.get() < 0 ? lastError() : std::error_code();
        }
    }
    trash.top = folder;
    while (trash.top != trash.top.parent_path() && mountOf(trash.top.parent_path()) == mount)
        trash.top = trash.top.parent_path();
    const FileDescriptor top = openFolder(trash.top.string());
    if (top.get() < 0)
        return lastError();
    const std::string user = std::to_string(::getuid());
    trash.folder = folderInSharedTrash(top.get(), user);
    if (trash.folder.get() < 0)
        trash.folder = ownFolder(top.get(), ".Trash-" + user);
    return trash.folder.get() < 0 ? lastError() : std::error_code();
}

std::string percentEncoded(std::string_view path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    constexpr std::string_view plain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
        "-._~/";
    std::string text;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (plain.find(c) != plain.npos)
            text += c;
        else
            text.append({'%', digits[byte >> 4U], digits[byte & 15U]});
    }
    return text;
}

std::string infoText(const std::string& path) {
    const std::time_t now = std::time(nullptr);
    std::tm local {};
    ::localtime_r(&now, &local);
    std::array<char, 64> date {};
    static_cast<void>(std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &local));
    return "[Trash Info]\nPath=" + percentEncoded(path) + "\nDeletionDate=" + date.data() + "\n";
}

/// The name, then "name.2.app" and so on, cut so that there is room for the suffix.
std::string nameInTrash(const fs::path& name, int number) {
    constexpr std::size_t longest = 255 - infoSuffix.size();
    std::string extension = name.extension().string();
    if (number > 1)
        extension.insert(0, std::to_string(number)).insert(0, 1, '.');
    const std::string stem = name.stem().string();
    const std::size_t room = longest - std::min(longest, extension.size());
    return (stem.substr(0, room) + extension).substr(0, longest);
}

std::error_code writeInfo(int folder, const std::string& name, const std::string& text) {
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    const FileDescriptor file(
        uninterrupted([&] { return ::openat(folder, name.c_str(), flags, 0600); }));
    if (file.get() < 0)
        return lastError();
    auto error = writeAll(file.get(), text);
    // What is in the Trash without it could not be put back after a power cut.
    if (!error)
        error = syncToDisk(file.get());
    if (error)
        ::unlinkat(folder, name.c_str(), 0);
    return error;
}

std::error_code moveInto(
    const Trash& trash, int folder, const fs::path& folderPath, const std::string& name) {
    const FileDescriptor files = ownFolder(trash.folder.get(), "files");
    if (files.get() < 0)
        return lastError();
    const FileDescriptor infos = ownFolder(trash.folder.get(), "info");
    if (infos.get() < 0)
        return lastError();
    const fs::path path = folderPath / name;
    const std::string info =
        infoText(trash.top.empty() ? path.string() : path.lexically_relative(trash.top).string());
    for (int number = 1; number <= mostNames; ++number) {
        const std::string there = nameInTrash(name, number);
        const std::string infoName = there + std::string(infoSuffix);
        auto error = writeInfo(infos.get(), infoName, info);
        if (!error) {
            error = moveWithoutReplacing(folder, name.c_str(), files.get(), there.c_str());
            if (!error)
                return {};
            ::unlinkat(infos.get(), infoName.c_str(), 0);
        }
        if (error != std::errc::file_exists)
            return error;
    }
    return failed(std::errc::file_exists);
}

} // namespace

std::error_code moveToTrash(
    const std::string& folder, const std::string& name, const Environment& environment) {
    if (name.empty() || name == "." || name == ".."
        || name.find_first_of(std::string_view("/\0", 2)) != name.npos
        || folder.find('\0') != folder.npos)
        return failed(std::errc::invalid_argument);
    try {
        std::error_code error;
        const fs::path path = fs::canonical(folder, error);
        if (error)
            return error;
        const FileDescriptor opened = openFolder(path.string());
        struct stat status;
        if (opened.get() < 0
            || ::fstatat(opened.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
            return lastError();
        Trash trash;
        error = openTrash(path, environment, trash);
        return error ? error : moveInto(trash, opened.get(), path, name);
    } catch (const std::bad_alloc&) {
        return failed(std::errc::not_enough_memory);
    }
}

} // namespace kw
