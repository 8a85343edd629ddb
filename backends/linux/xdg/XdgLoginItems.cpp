// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/XdgLoginItems.h>

#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>
#include <KWToolkit/platform/foundation/Unicode.h>
#include <backends/linux/posix/AtomicFile.h>
#include <backends/linux/posix/FileLock.h>
#include <backends/linux/posix/Folders.h>
#include <backends/linux/xdg/ApplicationFolder.h>
#include <backends/linux/xdg/BaseFolders.h>
#include <backends/linux/xdg/HostEntry.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <ranges>
#include <set>
#include <string_view>
#include <utility>

namespace kw {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view mainGroup = DesktopEntry::mainGroup;
constexpr std::string_view pathKey = "X-KWToolkit-Path";
constexpr std::string_view hideKey = "X-KWToolkit-Hide";
/// Of the entries that are the toolkit's; the greatest is the first.
constexpr std::string_view positionKey = "X-KWToolkit-Position";
constexpr std::string_view enabledKey = "X-GNOME-Autostart-enabled";
constexpr const char* launchVariable = "KWTOOLKIT_LOGIN_ITEM";
constexpr std::string_view shownMark = "shown:";
constexpr std::string_view hiddenMark = "hidden:";

struct Entry {
    std::string fileName;
    DesktopEntry content;

    bool has(std::string_view key, std::string_view value) const {
        return content.value(mainGroup, key) == value;
    }
    bool isDisabled() const { return has("Hidden", "true") || has(enabledKey, "false"); }
    /// Nothing for another's entry.
    std::optional<std::int64_t> position() const {
        constexpr std::int64_t greatest = std::int64_t(1) << 60; // many more can follow
        const std::string text = content.value(mainGroup, positionKey).value_or("");
        std::int64_t number = 0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
        const bool isNumber = result.ec == std::errc() && result.ptr == text.data() + text.size();
        return isNumber && number > 0 ? std::optional(std::min(number, greatest)) : std::nullopt;
    }
};

std::error_code readEntries(const fs::path& folder, std::vector<Entry>& entries) {
    std::error_code error;
    for (fs::directory_iterator file(folder, error), end; !error && file != end;
        file.increment(error)) {
        std::error_code noFile;
        std::string text;
        if (file->path().extension() == ".desktop" && file->is_regular_file(noFile)
            && !readFile(file->path().string(), text))
            entries.push_back({file->path().filename().string(), DesktopEntry(text)});
    }
    std::ranges::sort(entries, [](const Entry& one, const Entry& other) {
        const auto rank = [](const Entry& entry) { return -entry.position().value_or(0); };
        return std::pair(rank(one), one.fileName) < std::pair(rank(other), other.fileName);
    });
    return error;
}

LoginItem itemOf(const Entry& entry, const std::string& searchPath) {
    auto path = entry.content.string(mainGroup, pathKey);
    return {.path = path ? std::move(path) : applicationOf(entry.content, searchPath),
        .isHidden = entry.has(hideKey, "true"),
        .token = entry.fileName};
}

std::vector<LoginItem> itemsOf(const std::vector<Entry>& entries, const std::string& searchPath) {
    std::vector<LoginItem> items;
    for (const Entry& entry : entries) {
        if (!entry.isDisabled())
            items.push_back(itemOf(entry, searchPath));
    }
    return items;
}

std::string launchMark(const std::string& bundlePath, bool isHidden) {
    return std::string(isHidden ? hiddenMark : shownMark) + bundlePath;
}

/// A command line that says how it starts the program.
std::string commandLine(const std::string& program, const std::string& bundlePath, bool isHidden) {
    std::vector<std::string> words {
        "env", std::string(launchVariable) + "=" + launchMark(bundlePath, isHidden)};
    // It would be one more variable to env.
    if (program.find('=') != program.npos)
        words.insert(words.end(), {"sh", "-c", "exec \"$0\""});
    words.push_back(program);
    std::string line;
    for (const std::string& word : words)
        line.append(line.empty() ? "" : " ").append(quotedExecArgument(word));
    return line;
}

void setHidden(DesktopEntry& content, bool isHidden) {
    content.setValue(mainGroup, hideKey, isHidden ? "true" : "false");
    // Escapes change nothing in the mark.
    std::string exec = content.value(mainGroup, "Exec").value_or("");
    const auto variable = std::string(launchVariable) + "=";
    const std::string former = variable + launchMark("", !isHidden);
    if (const auto place = exec.find(former); place != exec.npos) {
        exec.replace(place, former.size(), variable + launchMark("", isHidden));
        content.setValue(mainGroup, "Exec", exec);
    }
}

/// What a new entry is made from.
struct Application {
    std::string entryName;
    std::string name;
    std::string path; ///< as the item has it
    std::string bundlePath; ///< expanded
    std::string program;
};

std::error_code describe(const LoginItem& item, Application& application) {
    const auto invalid = std::make_error_code(std::errc::invalid_argument);
    application.path = item.path.value_or("");
    application.bundlePath = stringByExpandingTildeInPath(application.path);
    const BundleInfo host = NSBundle::mainBundle().info();
    if (application.bundlePath == host.bundlePath) {
        const auto entryName = hostEntryName();
        if (!entryName)
            return invalid;
        application.entryName = *entryName;
        application.name = host.name;
        application.program = hostProgram();
    } else {
        application.name = fs::path(application.bundlePath).stem().string();
        application.entryName = application.name + ".desktop";
        application.program = application.bundlePath;
    }
    const std::string all =
        application.entryName + application.name + application.bundlePath + application.program;
    if (!isValidUTF8(all))
        return std::make_error_code(std::errc::illegal_byte_sequence);
    std::error_code error;
    const bool isWhole = application.bundlePath.starts_with('/')
        && application.program.starts_with('/') && !application.name.empty()
        && !fs::is_directory(application.program, error) && all.find('\0') == all.npos;
    return isWhole ? std::error_code() : invalid;
}

void fill(DesktopEntry& content, const Application& application, bool isHidden) {
    const std::pair<std::string_view, std::string> values[] {
        {"Type", "Application"},
        {"Name", escapedDesktopString(application.name)},
        {"Exec",
            escapedDesktopString(
                commandLine(application.program, application.bundlePath, isHidden))},
        {"TryExec", escapedDesktopString(application.program)},
        {pathKey, escapedDesktopString(application.path)},
        {hideKey, isHidden ? "true" : "false"},
        {enabledKey, "true"},
    };
    for (const auto& [key, value] : values)
        content.setValue(mainGroup, key, value);
    content.removeKey(mainGroup, "Hidden");
}

/// Brings the entries of a folder to what a list of items says.
class Revision {
public:
    Revision(fs::path folder, const BaseFolders& base, const std::vector<Entry>& entries,
        std::vector<LoginItem> former)
        : m_folder(std::move(folder))
        , m_configFolders(base.configFolders)
        , m_entries(entries)
        , m_former(std::move(former)) { }

    /// Works out what is to be written and deleted.
    std::error_code plan(const std::vector<LoginItem>& wanted) {
        const std::vector<LoginItem> items = withoutReplaced(wanted);
        for (const LoginItem& item : m_former)
            m_removed.insert(item.token);
        for (const LoginItem& item : items) {
            const auto former = std::ranges::find(m_former, item.token, &LoginItem::token);
            const bool isKnown = item.token.empty()
                || (m_removed.erase(item.token) > 0 && former->path == item.path);
            if (!isKnown)
                return std::make_error_code(std::errc::invalid_argument);
        }
        std::int64_t behind = 0;
        // From the end: an item that is added before all others leaves them as they are.
        for (const LoginItem& item : std::views::reverse(items)) {
            if (item.token.empty()) {
                if (const auto error = planNew(item, ++behind))
                    return error;
            } else {
                planFormer(item, behind);
            }
        }
        return {};
    }

    /// Deletes last: an item that takes another's place is there at any time.
    std::error_code carryOut() const {
        for (const auto& [fileName, content] : m_written) {
            if (const auto error = writeEntry((m_folder / fileName).string(), content))
                return error;
        }
        for (const std::string& fileName : m_removed) {
            const fs::path file = m_folder / fileName;
            std::error_code isGone;
            // Of a link the entry, not what it leads to, is to change.
            if ((!isInSystem(fileName) || fs::is_symlink(file, isGone))
                && ::unlink(file.c_str()) != 0 && errno != ENOENT)
                return lastError();
            if (!isInSystem(fileName))
                continue;
            // Without the user's entry the system's of the same name would hold.
            auto content = std::ranges::find(m_entries, fileName, &Entry::fileName)->content;
            content.setValue(mainGroup, "Hidden", "true");
            if (const auto error = writeEntry(file.string(), content))
                return error;
        }
        return m_removed.empty() ? std::error_code()
                                 : syncFolder(openFolder(m_folder.string()).get());
    }

private:
    /// A desktop starts a program once, so a new item takes the place of the one for its path.
    std::vector<LoginItem> withoutReplaced(std::vector<LoginItem> items) const {
        std::set<std::optional<std::string>> newPaths;
        for (const LoginItem& item : items) {
            if (item.token.empty())
                newPaths.insert(item.path);
        }
        std::erase_if(items, [&](const LoginItem& item) {
            const auto entry = std::ranges::find(m_entries, item.token, &Entry::fileName);
            return entry != m_entries.end() && entry->position() && newPaths.contains(item.path);
        });
        return items;
    }

    bool isInSystem(const std::string& fileName) const {
        std::error_code error;
        return std::ranges::any_of(m_configFolders, [&](const std::string& folder) {
            return fs::exists(fs::path(folder) / "autostart" / fileName, error);
        });
    }

    std::error_code planNew(const LoginItem& item, std::int64_t position) {
        Application application;
        if (const auto error = describe(item, application))
            return error;
        Entry entry {application.entryName, DesktopEntry("")};
        const std::string stem = fs::path(entry.fileName).stem().string();
        // Another program's must not take the place of one of the system's.
        const bool isHost = application.entryName == hostEntryName();
        for (int number = 2; (!isHost && isInSystem(entry.fileName)) || !takeFile(entry); ++number)
            entry.fileName = stem + "-" + std::to_string(number) + ".desktop";
        fill(entry.content, application, item.isHidden);
        entry.content.setValue(mainGroup, positionKey, std::to_string(position));
        m_written.push_back(std::move(entry));
        return {};
    }

    void planFormer(const LoginItem& item, std::int64_t& behind) {
        Entry entry = *std::ranges::find(m_entries, item.token, &Entry::fileName);
        const std::string before = entry.content.text();
        if (entry.has(hideKey, "true") != item.isHidden)
            setHidden(entry.content, item.isHidden);
        if (const auto position = entry.position()) {
            behind = std::max(behind + 1, *position);
            if (behind != *position)
                entry.content.setValue(mainGroup, positionKey, std::to_string(behind));
        }
        if (entry.content.text() != before)
            m_written.push_back(std::move(entry));
    }

    /// Whether a new entry may have this file: there is none, or one of the toolkit's that is no
    /// login item (any more), whose other keys the entry gets.
    bool takeFile(Entry& entry) {
        const auto isWritten = std::ranges::find(m_written, entry.fileName, &Entry::fileName);
        struct stat status;
        if (isWritten != m_written.end())
            return false;
        if (::lstat((m_folder / entry.fileName).c_str(), &status) != 0)
            return true; // writing tells what is wrong
        const auto former = std::ranges::find(m_entries, entry.fileName, &Entry::fileName);
        if (!S_ISREG(status.st_mode) || former == m_entries.end()
            || !(former->isDisabled() || m_removed.contains(entry.fileName)))
            return false;
        if (former->position())
            entry.content = former->content;
        else if (former->isDisabled())
            return false;
        m_removed.erase(entry.fileName);
        return true;
    }

    fs::path m_folder;
    std::vector<std::string> m_configFolders;
    const std::vector<Entry>& m_entries;
    std::vector<LoginItem> m_former;
    std::vector<Entry> m_written;
    std::set<std::string> m_removed; ///< the names of files
};

std::optional<fs::path> autostartFolder(const Environment& environment) {
    const auto configHome = baseFolders(environment).configHome;
    return configHome ? std::optional(fs::path(*configHome) / "autostart") : std::nullopt;
}

} // namespace

XdgLoginItems::XdgLoginItems(Environment environment)
    : m_environment(std::move(environment)) { }

std::vector<LoginItem> XdgLoginItems::read() {
    const auto folder = autostartFolder(m_environment);
    std::vector<Entry> entries;
    if (!folder || readEntries(*folder, entries))
        return {};
    return itemsOf(entries, m_environment("PATH"));
}

std::error_code XdgLoginItems::update(
    const std::function<void(std::vector<LoginItem>& items)>& change) {
    const auto folder = autostartFolder(m_environment);
    if (!folder)
        return std::make_error_code(std::errc::no_such_file_or_directory);
    if (const auto error = createFolders(folder->string()))
        return error;
    std::error_code error;
    // No desktop takes it for an entry.
    const FileLock lock((*folder / ".kwtoolkit.lock").string(), error);
    if (error)
        return error;
    std::vector<Entry> entries;
    if (const auto readError = readEntries(*folder, entries))
        return readError;
    std::vector<LoginItem> items = itemsOf(entries, m_environment("PATH"));
    Revision revision(*folder, baseFolders(m_environment), entries, items);
    change(items);
    const auto planError = revision.plan(items);
    return planError ? planError : revision.carryOut();
}

LoginLaunch XdgLoginItems::launch() const {
    const std::string mark = m_environment(launchVariable);
    const std::string bundlePath = NSBundle::mainBundle().bundlePath();
    if (mark == launchMark(bundlePath, false))
        return LoginLaunch::shown;
    return mark == launchMark(bundlePath, true) ? LoginLaunch::hidden : LoginLaunch::none;
}

} // namespace kw
