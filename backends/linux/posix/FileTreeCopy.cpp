// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/FileTreeCopy.h>

#include <backends/linux/posix/Folders.h>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
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
constexpr std::string_view accessLists = "system.posix_acl_";

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
        , m_prefix(std::string(".").append(name, 0, longestName).append(".copy-")) { }
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
            if (folder.get() >= 0 && ::flock(folder.get(), LOCK_EX | LOCK_NB) == 0)
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
                ::fremovexattr(m_folder.get(), (std::string(accessLists) + list).c_str());
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

/// Whether it is no failure that an attribute or an owner could not be set.
bool isOptional(int error) { return error == ENOTSUP || error == EPERM || error == EINVAL; }

/// The mode for a file with that owner: without the bits that would lend another owner's rights.
mode_t modeFor(const struct stat& original, const struct stat& copy) {
    mode_t mode = original.st_mode & 07777;
    if (copy.st_uid != original.st_uid)
        mode &= ~static_cast<mode_t>(S_ISUID);
    if (copy.st_gid != original.st_gid)
        mode &= ~static_cast<mode_t>(S_ISGID);
    return mode;
}

std::array<timespec, 2> timesOf(const struct stat& status) {
    return {status.st_atim, status.st_mtim};
}

std::error_code copyExtendedAttributes(int from, int to) {
    const ssize_t size = ::flistxattr(from, nullptr, 0);
    if (size <= 0)
        return size == 0 || errno == ENOTSUP ? std::error_code() : lastError();
    std::string names(static_cast<std::size_t>(size), '\0');
    const ssize_t used = ::flistxattr(from, names.data(), names.size());
    if (used < 0)
        return lastError();
    names.resize(static_cast<std::size_t>(used));

    std::vector<char> value(XATTR_SIZE_MAX);
    // An access list may forbid its owner to set other attributes, so it goes last.
    for (const bool isAccessList : {false, true}) {
        for (std::size_t begin = 0; begin < names.size(); begin = names.find('\0', begin) + 1) {
            const char* const name = names.c_str() + begin;
            if (std::string_view(name).starts_with(accessLists) != isAccessList)
                continue;
            const ssize_t length = ::fgetxattr(from, name, value.data(), value.size());
            if (length < 0)
                return lastError();
            if (::fsetxattr(to, name, value.data(), static_cast<std::size_t>(length), 0) != 0
                && !isOptional(errno))
                return lastError();
        }
    }
    return {};
}

/// Makes an open file or folder, whose content is complete, what the original is.
std::error_code copyAttributes(int from, const struct stat& original, int to) {
    struct stat copy;
    if (::fstat(to, &copy) != 0)
        return lastError();
    if (copy.st_uid != original.st_uid || copy.st_gid != original.st_gid) {
        if (::fchown(to, original.st_uid, original.st_gid) != 0
            && (!isOptional(errno)
                || (::fchown(to, static_cast<uid_t>(-1), original.st_gid) != 0
                    && !isOptional(errno))))
            return lastError();
        if (::fstat(to, &copy) != 0)
            return lastError();
    }
    if (const auto error = copyExtendedAttributes(from, to))
        return error;
    if (::fchmod(to, modeFor(original, copy)) != 0 || ::futimens(to, timesOf(original).data()) != 0)
        return lastError();
    return {};
}

std::error_code readAndWrite(int from, int to, off_t count) {
    std::array<char, 65536> bytes;
    while (count > 0) {
        const auto wanted = std::min(bytes.size(), static_cast<std::size_t>(count));
        const ssize_t read = uninterrupted([&] { return ::read(from, bytes.data(), wanted); });
        if (read <= 0)
            return read == 0 ? std::error_code() : lastError();
        if (const auto error = writeAll(to, {bytes.data(), static_cast<std::size_t>(read)}))
            return error;
        count -= read;
    }
    return {};
}

/// Copies so many bytes, or as many as there are, from and to where the files stand.
std::error_code copyBytes(int from, int to, off_t count) {
    while (count > 0) {
        const ssize_t copied = uninterrupted([=] {
            return ::copy_file_range(
                from, nullptr, to, nullptr, static_cast<std::size_t>(count), 0);
        });
        if (copied <= 0)
            break;
        count -= copied;
    }
    // Whatever that cannot do, these can, or they tell why not.
    return readAndWrite(from, to, count);
}

std::error_code copyWithHoles(int from, int to, off_t size) {
    for (off_t end = 0;;) {
        const off_t begin = ::lseek(from, end, SEEK_DATA);
        if (begin < 0 && errno != ENXIO) // which says that the rest is a hole
            return end == 0 ? copyBytes(from, to, size) : lastError();
        if (begin < 0 || begin >= size)
            return ::ftruncate(to, size) == 0 ? std::error_code() : lastError();
        end = std::min(::lseek(from, begin, SEEK_HOLE), size);
        if (end < 0 || ::lseek(from, begin, SEEK_SET) < 0 || ::lseek(to, begin, SEEK_SET) < 0)
            return lastError();
        if (const auto error = copyBytes(from, to, end - begin))
            return error;
    }
}

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
            if (!isFirst)
                return ::linkat(m_workshop.get(), known->second.c_str(), to.folder, to.name, 0) == 0
                    ? std::error_code()
                    : lastError();
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
        const FileDescriptor source(
            uninterrupted([=] { return ::openat(from.folder, from.name, readFlags); }));
        struct stat original;
        if (source.get() < 0 || ::fstat(source.get(), &original) != 0)
            return lastError();
        if (!isSame(original, seen))
            return failed(std::errc::resource_unavailable_try_again);
        const FileDescriptor made(
            uninterrupted([=] { return ::openat(to.folder, to.name, writeFlags, 0600); }));
        if (made.get() < 0)
            return lastError();
        if (const auto error = copyData(source.get(), original, made.get()))
            return error;
        // The disk has work to do from now on, and less is left for the sync at the end.
        ::sync_file_range(made.get(), 0, 0, SYNC_FILE_RANGE_WRITE);
        return copyAttributes(source.get(), original, made.get());
    }

    std::error_code copyData(int from, const struct stat& original, int to) {
        constexpr off_t blockUnit = 512;
        if (m_canClone && ::ioctl(to, FICLONE, from) == 0)
            return {};
        m_canClone = false; // not here, and not for the next file
        return original.st_blocks * blockUnit < original.st_size
            ? copyWithHoles(from, to, original.st_size)
            : copyBytes(from, to, SSIZE_MAX);
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
    bool m_canClone = true;
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
    // One sync for all files takes a fraction of the time of one for each.
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
    } catch (const std::bad_alloc&) {
        return failed(std::errc::not_enough_memory);
    }
}

} // namespace kw
