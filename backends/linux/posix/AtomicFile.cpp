// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/AtomicFile.h>

#include <backends/linux/posix/FileLock.h>
#include <backends/linux/posix/Folders.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>

namespace kw {

namespace fs = std::filesystem;

namespace {

constexpr int mostLinks = 40; // as many as the kernel follows
constexpr std::size_t longestName = 200; // leaves room for what a replacement adds

std::error_code followLinks(fs::path& path) {
    std::error_code error;
    for (int links = 0; fs::is_symlink(fs::symlink_status(path, error)); ++links) {
        if (links == mostLinks)
            return std::make_error_code(std::errc::too_many_symbolic_link_levels);
        path = path.parent_path() / fs::read_symlink(path, error);
        if (error)
            return error;
    }
    return {};
}

std::error_code fill(int descriptor, std::string_view content, mode_t mode) {
    if (uninterrupted([=] { return ::ftruncate(descriptor, 0); }) != 0)
        return lastError();
    // Before the content comes, which not everybody may read.
    if (::fchmod(descriptor, mode) != 0)
        return lastError();
    const auto error = writeAll(descriptor, content);
    return error ? error : syncToDisk(descriptor);
}

} // namespace

std::error_code readFile(const std::string& path, std::string& content) {
    content.clear();
    const FileDescriptor file(
        uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC); }));
    if (file.get() < 0)
        return lastError();
    std::array<char, 16384> bytes;
    for (;;) {
        const ssize_t count =
            uninterrupted([&] { return ::read(file.get(), bytes.data(), bytes.size()); });
        if (count <= 0)
            return count == 0 ? std::error_code() : lastError();
        content.append(bytes.data(), static_cast<std::size_t>(count));
    }
}

std::error_code createFolders(const std::string& path) {
    if (::mkdir(path.c_str(), 0700) != 0) {
        if (errno == EEXIST)
            return {};
        const auto error = lastError();
        const fs::path parent = fs::path(path).parent_path();
        if (error != std::errc::no_such_file_or_directory || parent.empty() || parent == path)
            return error;
        if (const auto parentError = createFolders(parent.string()))
            return parentError;
        if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST)
            return lastError();
    }
    const FileDescriptor parent = openFolder(fs::path(path).parent_path().string());
    return parent.get() < 0 ? lastError() : syncFolder(parent.get());
}

std::error_code replaceFile(const std::string& path, std::string_view content, mode_t mode) {
    fs::path target = path;
    if (const auto error = followLinks(target))
        return error;
    struct stat former;
    if (::stat(target.c_str(), &former) == 0) {
        if (!S_ISREG(former.st_mode))
            return std::make_error_code(std::errc::invalid_argument);
        mode = former.st_mode & 0777;
    } else if (errno != ENOENT) {
        return lastError();
    }
    const FileDescriptor folder = openFolder(target.parent_path().string());
    if (folder.get() < 0)
        return lastError();

    const std::string name = target.filename().string().substr(0, longestName);
    const std::string replacement = (target.parent_path() / ("." + name + ".replacement")).string();
    std::error_code error;
    const FileLock lock(replacement, error);
    if (error)
        return error;

    // The next writer must be able to open what this one leaves if it is killed.
    const mode_t meanwhile = mode | 0600;
    error = fill(lock.get(), content, meanwhile);
    if (!error && ::rename(replacement.c_str(), target.c_str()) != 0)
        error = lastError();
    if (error) {
        ::unlink(replacement.c_str());
        return error;
    }
    if (mode != meanwhile && ::fchmod(lock.get(), mode) != 0)
        return lastError();
    return syncFolder(folder.get());
}

} // namespace kw
