// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/FileTreeCopy.h>

#include <backends/linux/posix/FileCopies.h>
#include <backends/linux/posix/Folders.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <map>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

namespace kw {

namespace {

constexpr std::size_t longestName = 200; // leaves room for what a copy's name adds

std::error_code failed(std::errc error) { return std::make_error_code(error); }

bool isSame(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// Removes an entry and all that is in it, as far as that goes.
void removeTree(int folder, const char* name) {
    if (::unlinkat(folder, name, 0) == 0)
        return;
    ::fchmodat(folder, name, 0700, AT_SYMLINK_NOFOLLOW);
    const FileDescriptor opened = openFolderIn(folder, name);
    if (opened.get() < 0)
        return;
    std::error_code error;
    for (const std::string& inside : namesIn(opened.get(), error))
        removeTree(opened.get(), inside.c_str());
    ::unlinkat(folder, name, AT_REMOVEDIR);
}

/// The folder beside the destination in which a copy takes shape. It is locked by the copier, which
/// tells it from one that a killed copier left.
class Workshop {
public:
    Workshop(int parent, const std::string& name)
        : m_parent(parent)
        , m_prefix(std::string(".").append(name, 0, longestName).append(".kwtoolkit-copy-")) { }
    ~Workshop() {
        if (m_folder.get() >= 0 && !m_isGone)
            removeTree(m_parent, m_name.c_str());
    }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    void removeLeftOvers() const {
        std::error_code error;
        for (const std::string& name : namesIn(m_parent, error)) {
            if (name.size() != m_prefix.size() + randomSize || !name.starts_with(m_prefix))
                continue;
            const FileDescriptor folder = openFolderIn(m_parent, name.c_str());
            struct stat status;
            if (folder.get() >= 0 && ::fstat(folder.get(), &status) == 0
                && status.st_uid == ::geteuid() && ::flock(folder.get(), LOCK_EX | LOCK_NB) == 0)
                removeTree(m_parent, name.c_str());
        }
    }

    std::error_code make() {
        for (int attempt = 0; attempt < mostAttempts; ++attempt) {
            m_name = m_prefix + randomText();
            if (::mkdirat(m_parent, m_name.c_str(), 0700) != 0) {
                if (errno == EEXIST)
                    continue;
                return lastError();
            }
            // Until it is locked another copier may take it for a left-over.
            FileDescriptor folder = openFolderIn(m_parent, m_name.c_str());
            if (folder.get() < 0) {
                if (errno == ENOENT)
                    continue;
                const auto error = lastError();
                ::unlinkat(m_parent, m_name.c_str(), AT_REMOVEDIR);
                return error;
            }
            // Where folders cannot be locked, none is taken for a left-over.
            uninterrupted([&] { return ::flock(folder.get(), LOCK_EX); });
            struct stat there;
            if (::fstat(folder.get(), &m_status) != 0)
                return lastError();
            if (::fstatat(m_parent, m_name.c_str(), &there, AT_SYMLINK_NOFOLLOW) != 0
                || !isSame(there, m_status))
                continue;
            m_folder = std::move(folder);
            // The parent's are not the copy's.
            for (const char* const list : {"access", "default"})
                ::fremovexattr(m_folder.get(), (std::string(accessListAttributes) + list).c_str());
            return {};
        }
        return failed(std::errc::file_exists);
    }

    int get() const { return m_folder.get(); }
    const struct stat& status() const { return m_status; }

    /// Renames the folder itself, which is the copy.
    std::error_code becomeCopy(const char* name) {
        const auto error = moveWithoutReplacing(m_parent, m_name.c_str(), m_parent, name);
        m_isGone = !error;
        return error;
    }

private:
    static constexpr int mostAttempts = 100;
    static constexpr std::size_t randomSize = 6;
    static std::string randomText() {
        constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz234567";
        std::array<unsigned char, randomSize> bytes {};
        static_cast<void>(uninterrupted([&] { return ::getrandom(bytes.data(), randomSize, 0); }));
        std::string text;
        for (const unsigned char byte : bytes)
            text += letters[byte % letters.size()];
        return text;
    }

    int m_parent;
    std::string m_prefix;
    std::string m_name;
    FileDescriptor m_folder;
    struct stat m_status {};
    bool m_isGone = false;
};

/// An entry of a folder: the open folder and the name in it.
struct Place {
    int folder;
    const char* name;
};

class Copier {
public:
    explicit Copier(const Workshop& workshop)
        : m_workshop(workshop) { }

    /// Copies what is in a folder, and what the folder is.
    std::error_code copyContent(
        int from, const struct stat& original, int to, const std::string& path) {
        if (isSame(original, m_workshop.status()))
            return failed(std::errc::invalid_argument);
        std::error_code error;
        const std::vector<std::string> names = namesIn(from, error);
        if (error)
            return error;
        for (const std::string& name : names) {
            error = copy({from, name.c_str()}, {to, name.c_str()}, path + name);
            if (error)
                return error;
        }
        return copyAttributes(from, original, to);
    }

    /// The path is that of the copy in the workshop.
    std::error_code copy(Place from, Place to, const std::string& path) {
        struct stat original;
        if (::fstatat(from.folder, from.name, &original, AT_SYMLINK_NOFOLLOW) != 0)
            return lastError();
        if (S_ISDIR(original.st_mode))
            return copyFolder(from, to, path);
        if (original.st_nlink > 1) {
            const auto [known, isFirst] =
                m_linked.try_emplace({original.st_dev, original.st_ino}, path);
            if (!isFirst) {
                if (::linkat(m_workshop.get(), known->second.c_str(), to.folder, to.name, 0) == 0)
                    return {};
                if (errno != EMLINK && !isOptional(errno))
                    return lastError();
            }
        }
        switch (original.st_mode & S_IFMT) {
        case S_IFREG:
            return copyFile(from, to, original);
        case S_IFLNK:
            return copyLink(from, to, original);
        case S_IFIFO:
            return ::mkfifoat(to.folder, to.name, 0600) == 0 ? nameAttributes(to, original)
                                                             : lastError();
        default:
            return failed(std::errc::not_supported);
        }
    }

    /// Waits until all is copied.
    std::error_code finish() { return m_copies.finish(); }

private:
    std::error_code copyFolder(Place from, Place to, const std::string& path) {
        const FileDescriptor source = openFolderIn(from.folder, from.name);
        struct stat original;
        if (source.get() < 0 || ::fstat(source.get(), &original) != 0
            || ::mkdirat(to.folder, to.name, 0700) != 0)
            return lastError();
        const FileDescriptor made = openFolderIn(to.folder, to.name);
        return made.get() < 0 ? lastError()
                              : copyContent(source.get(), original, made.get(), path + "/");
    }

    std::error_code copyFile(Place from, Place to, const struct stat& seen) {
        // Should a FIFO have taken the file's place, this does not wait for its writer.
        constexpr int readFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
        constexpr int writeFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        FileDescriptor source(
            uninterrupted([=] { return ::openat(from.folder, from.name, readFlags); }));
        struct stat original;
        if (source.get() < 0 || ::fstat(source.get(), &original) != 0)
            return lastError();
        if (!isSame(original, seen))
            return failed(std::errc::resource_unavailable_try_again);
        FileDescriptor made(
            uninterrupted([=] { return ::openat(to.folder, to.name, writeFlags, 0600); }));
        if (made.get() < 0)
            return lastError();
        return m_copies.add({std::move(source), original, std::move(made)});
    }

    static std::error_code copyLink(Place from, Place to, const struct stat& original) {
        std::array<char, PATH_MAX + 1> target;
        const ssize_t size = ::readlinkat(from.folder, from.name, target.data(), target.size() - 1);
        if (size < 0)
            return lastError();
        target.at(static_cast<std::size_t>(size)) = '\0';
        if (::symlinkat(target.data(), to.folder, to.name) != 0)
            return lastError();
        return nameAttributes(to, original);
    }

    /// For what cannot be opened: links and FIFOs.
    static std::error_code nameAttributes(Place to, const struct stat& original) {
        if (::fchownat(to.folder, to.name, original.st_uid, original.st_gid, AT_SYMLINK_NOFOLLOW)
                != 0
            && !isOptional(errno))
            return lastError();
        if (!S_ISLNK(original.st_mode)
            && ::fchmodat(to.folder, to.name, original.st_mode & 0777, AT_SYMLINK_NOFOLLOW) != 0)
            return lastError();
        return ::utimensat(to.folder, to.name, timesOf(original).data(), AT_SYMLINK_NOFOLLOW) == 0
            ? std::error_code()
            : lastError();
    }

    const Workshop& m_workshop;
    std::map<std::pair<dev_t, ino_t>, std::string> m_linked; ///< where the first copy is
    FileCopies m_copies;
};

/// The folder that the path's last component is in, and the component. An empty name for a path
/// that has none.
std::pair<std::string, std::string> splitPath(std::string path) {
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    const auto slash = path.rfind('/');
    const std::string name = path.substr(slash + 1);
    const bool isName = name != "." && name != ".." && path.find('\0') == path.npos;
    return {slash == path.npos ? "" : path.substr(0, slash + 1), isName ? name : ""};
}

std::error_code copyInto(
    int parent, const std::string& name, const std::string& path, const struct stat& original) {
    Workshop workshop(parent, name);
    workshop.removeLeftOvers();
    if (const auto error = workshop.make())
        return error;

    Copier copier(workshop);
    const bool isFolder = S_ISDIR(original.st_mode);
    if (isFolder) {
        const FileDescriptor source = openFolderIn(AT_FDCWD, path.c_str());
        struct stat opened;
        if (source.get() < 0 || ::fstat(source.get(), &opened) != 0)
            return lastError();
        if (const auto error = copier.copyContent(source.get(), opened, workshop.get(), ""))
            return error;
    } else if (const auto error =
                   copier.copy({AT_FDCWD, path.c_str()}, {workshop.get(), name.c_str()}, name)) {
        return error;
    }
    if (const auto error = copier.finish())
        return error;
    if (::syncfs(workshop.get()) != 0)
        return lastError();
    if (const auto error = isFolder
            ? workshop.becomeCopy(name.c_str())
            : moveWithoutReplacing(workshop.get(), name.c_str(), parent, name.c_str()))
        return error;
    return syncFolder(parent);
}

} // namespace

std::error_code copyFileTree(const std::string& path, const std::string& to) {
    try {
        const auto [sourceFolder, sourceName] = splitPath(path);
        const auto [folder, name] = splitPath(to);
        if (sourceName.empty() || name.empty())
            return failed(std::errc::invalid_argument);
        // Without a slash at the end, which would have a symbolic link followed.
        const std::string source = sourceFolder + sourceName;
        struct stat original;
        if (::lstat(source.c_str(), &original) != 0)
            return lastError();
        const FileDescriptor parent = openFolder(folder);
        if (parent.get() < 0)
            return lastError();
        struct stat there;
        if (::fstatat(parent.get(), name.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0)
            return failed(std::errc::file_exists);
        if (errno != ENOENT)
            return lastError();
        return copyInto(parent.get(), name, source, original);
    } catch (const std::system_error& error) { // no thread
        return error.code();
    } catch (const std::bad_alloc&) {
        return failed(std::errc::not_enough_memory);
    }
}

} // namespace kw
