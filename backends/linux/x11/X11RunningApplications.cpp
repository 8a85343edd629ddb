// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/x11/X11RunningApplications.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>
#include <backends/linux/posix/AtomicFile.h>
#include <backends/linux/xdg/InstalledApplications.h>
#include <backends/linux/xdg/XdgMainBundle.h>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <limits>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace kw {

namespace {

enum AtomIndex : std::size_t {
    activeWindowAtom,
    clientListAtom,
    clientListStackingAtom,
    supportingCheckAtom,
    processAtom,
    leaderAtom,
    typeAtom,
    gtkEntryAtom,
    kdeEntryAtom,
    firstTypeAtom,
};
constexpr std::array<std::string_view, firstTypeAtom> atomNames {"_NET_ACTIVE_WINDOW",
    "_NET_CLIENT_LIST", "_NET_CLIENT_LIST_STACKING", "_NET_SUPPORTING_WM_CHECK", "_NET_WM_PID",
    "WM_CLIENT_LEADER", "_NET_WM_WINDOW_TYPE", "_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE"};

struct WindowType {
    std::string_view name;
    bool isOfApplication;
};
constexpr WindowType windowTypes[] {
    {"_NET_WM_WINDOW_TYPE_NORMAL", true},
    {"_NET_WM_WINDOW_TYPE_DIALOG", true},
    {"_NET_WM_WINDOW_TYPE_UTILITY", true},
    {"_NET_WM_WINDOW_TYPE_DESKTOP", false},
    {"_NET_WM_WINDOW_TYPE_DOCK", false},
    {"_NET_WM_WINDOW_TYPE_TOOLBAR", false},
    {"_NET_WM_WINDOW_TYPE_MENU", false},
    {"_NET_WM_WINDOW_TYPE_SPLASH", false},
    {"_NET_WM_WINDOW_TYPE_DROPDOWN_MENU", false},
    {"_NET_WM_WINDOW_TYPE_POPUP_MENU", false},
    {"_NET_WM_WINDOW_TYPE_TOOLTIP", false},
    {"_NET_WM_WINDOW_TYPE_NOTIFICATION", false},
    {"_NET_WM_WINDOW_TYPE_COMBO", false},
    {"_NET_WM_WINDOW_TYPE_DND", false},
};

// Programs that run others; a version may follow.
constexpr std::string_view interpreters[] {"bash", "dash", "electron", "gjs", "gjs-console", "java",
    "lua", "mono", "mono-sgen", "node", "nodejs", "perl", "php", "python", "ruby", "sh", "wish",
    "zsh"};

constexpr std::size_t mostWindows = 4096;
// In units of four bytes.
constexpr std::uint32_t listRoom = mostWindows;
constexpr std::uint32_t textRoom = 256;

using Property = XcbPointer<xcb_get_property_reply_t>;

xcb_get_property_cookie_t requestProperty(
    xcb_connection_t* xcb, xcb_window_t window, xcb_atom_t name, std::uint32_t room) {
    return xcb_get_property(
        xcb, /*delete*/ false, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, room);
}

std::vector<std::uint32_t> numbers(const Property& property) {
    if (!property || property->format != 32)
        return {};
    const auto* const first =
        static_cast<const std::uint32_t*>(xcb_get_property_value(property.get()));
    return {first, first + property->value_len};
}

std::uint32_t firstNumber(const Property& property) {
    const auto all = numbers(property);
    return all.empty() ? 0 : all.front();
}

/// The parts of a text that NULs end.
std::vector<std::string> texts(const Property& property, std::size_t count) {
    std::vector<std::string> parts(count);
    if (!property || property->format != 8)
        return parts;
    std::string_view rest(
        static_cast<const char*>(xcb_get_property_value(property.get())), property->value_len);
    for (std::string& part : parts) {
        part = rest.substr(0, rest.find('\0'));
        rest.remove_prefix(std::min(part.size() + 1, rest.size()));
    }
    return parts;
}

std::string text(const Property& property) { return texts(property, 1).front(); }

std::string hostName() {
    std::array<char, 256> name {};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

/// The identifier of a desktop entry that is given so, or as the file's name or path.
std::string entryIdentifier(const std::string& entry) {
    constexpr std::string_view extension = ".desktop";
    std::string name = lastPathComponent(entry);
    if (name.ends_with(extension))
        name.resize(name.size() - extension.size());
    return name;
}

/// What a process was started with.
Environment environmentOf(const std::string& processFolder) {
    std::string all;
    if (readFile(processFolder + "/environ", all))
        all.clear();
    return [all = '\0' + all](const char* name) -> std::string {
        const std::string key = '\0' + std::string(name) + '=';
        const auto found = all.find(key);
        if (found == all.npos)
            return "";
        const auto begin = found + key.size();
        return all.substr(begin, std::min(all.find('\0', begin), all.size()) - begin);
    };
}

/// Empty where the process has gone, or is not ours to look at.
BundleInfo bundleOf(int process) {
    const std::string folder = "/proc/" + std::to_string(process);
    std::error_code error;
    const auto program = std::filesystem::read_symlink(folder + "/exe", error);
    if (error)
        return {};
    return XdgMainBundle(program.string(), environmentOf(folder)).info();
}

bool isInterpreter(std::string_view program) {
    const auto name = program.substr(0, program.find_last_not_of("0123456789.-") + 1);
    return std::ranges::find(interpreters, name) != std::end(interpreters);
}

} // namespace

/// The installed desktop entries, read when they are first asked for.
class X11RunningApplications::Entries {
public:
    explicit Entries(const Environment& environment)
        : m_folders(applicationsFolders(environment)) { }

    std::optional<DesktopFile> entryOf(const Identity& identity) {
        if (auto entry = installedEntry(m_folders, identity.entry))
            return entry;
        if (!m_all)
            m_all = installedEntries(m_folders);
        const DesktopFile* const entry =
            entryOfWindows(*m_all, identity.instance, identity.windowClass);
        return entry ? std::optional(*entry) : std::nullopt;
    }

private:
    std::vector<std::filesystem::path> m_folders;
    std::optional<std::vector<DesktopFile>> m_all;
};

X11RunningApplications::Identity X11RunningApplications::Identity::ofApplication() const {
    if (process != 0)
        return {.process = process};
    if (leader != 0)
        return {.leader = leader};
    return {.windowClass = windowClass};
}

X11RunningApplications::X11RunningApplications(std::string displayName, Environment environment)
    : m_displayName(std::move(displayName))
    , m_environment(std::move(environment))
    , m_runLoop(Platform::runLoop()) { }

X11RunningApplications::~X11RunningApplications() { disconnect(); }

std::optional<std::vector<RunningApplication>> X11RunningApplications::frontToBack() {
    if (m_connection)
        readEvents();
    if (!m_connection)
        connect();
    if (!m_connection || !isManaged())
        return std::nullopt;
    updateHistory();
    const std::vector<Identity> windows = identities();
    // What came along with the answers does not wake the loop any more.
    readEvents();
    if (!m_connection)
        return std::nullopt;

    std::vector<RunningApplication> applications;
    std::map<Identity, RunningApplication> described;
    std::set<Identity> seen;
    Entries entries(m_environment);
    for (const Identity& window : windows) {
        if (!seen.insert(window.ofApplication()).second)
            continue;
        if (window.process == ::getpid()) {
            const BundleInfo host = NSBundle::mainBundle().info();
            applications.push_back({host.name, host.bundlePath, window.process});
            continue;
        }
        const auto known = m_described.find(window);
        const RunningApplication& application = described[window] =
            known == m_described.end() ? describe(window, entries) : known->second;
        if (!application.bundleName.empty() || !application.bundlePath.empty())
            applications.push_back(application);
    }
    m_described = std::move(described);
    return applications;
}

void X11RunningApplications::connect() {
    m_connection = X11Connection::open(m_displayName);
    if (!m_connection)
        return;
    std::vector<xcb_intern_atom_cookie_t> requests;
    const auto request = [&](std::string_view name) {
        requests.push_back(xcb_intern_atom(*m_connection, /*only_if_exists*/ false,
            static_cast<std::uint16_t>(name.size()), name.data()));
    };
    std::ranges::for_each(atomNames, request);
    std::ranges::for_each(windowTypes, request, &WindowType::name);
    m_atoms.clear();
    for (const auto cookie : requests) {
        const auto reply = xcbReply(xcb_intern_atom_reply, *m_connection, cookie);
        m_atoms.push_back(reply ? reply->atom : xcb_atom_t {XCB_ATOM_NONE});
    }
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(
        *m_connection, m_connection->rootWindows().front(), XCB_CW_EVENT_MASK, &events);
    m_watch = m_runLoop.watchDescriptor(m_connection->descriptor(), [this] { readEvents(); });
}

void X11RunningApplications::disconnect() {
    m_runLoop.unwatch(std::exchange(m_watch, RunLoop::Watch::none));
    m_connection.reset();
    m_history.clear();
}

void X11RunningApplications::readEvents() {
    for (bool hasNews = true; std::exchange(hasNews, false);) {
        for (auto event = m_connection->nextEvent(); event;
            event = m_connection->nextQueuedEvent()) {
            hasNews |= eventType(*event) == XCB_PROPERTY_NOTIFY
                && reinterpret_cast<const xcb_property_notify_event_t&>(*event).atom
                    == m_atoms[activeWindowAtom];
        }
        if (hasNews)
            moveToFront(activeWindow());
    }
    if (!isConnected())
        disconnect();
}

Property X11RunningApplications::property(xcb_window_t window, xcb_atom_t name) const {
    return xcbReply(xcb_get_property_reply, *m_connection,
        requestProperty(*m_connection, window, name, listRoom));
}

xcb_window_t X11RunningApplications::activeWindow() const {
    return firstNumber(property(m_connection->rootWindows().front(), m_atoms[activeWindowAtom]));
}

void X11RunningApplications::moveToFront(xcb_window_t window) {
    if (window == XCB_WINDOW_NONE)
        return;
    std::erase(m_history, window);
    m_history.insert(m_history.begin(), window);
    m_history.resize(std::min(m_history.size(), mostWindows));
}

bool X11RunningApplications::isManaged() const {
    // What the root says may be left over from a window manager that died.
    const xcb_atom_t check = m_atoms[supportingCheckAtom];
    const xcb_window_t child = firstNumber(property(m_connection->rootWindows().front(), check));
    return child != XCB_WINDOW_NONE && firstNumber(property(child, check)) == child;
}

void X11RunningApplications::updateHistory() {
    const xcb_window_t root = m_connection->rootWindows().front();
    std::vector<std::uint32_t> windows = numbers(property(root, m_atoms[clientListStackingAtom]));
    if (windows.empty())
        windows = numbers(property(root, m_atoms[clientListAtom]));
    std::ranges::reverse(windows);
    moveToFront(activeWindow());
    const std::set<xcb_window_t> open(windows.begin(), windows.end());
    std::erase_if(m_history, [&](xcb_window_t window) { return !open.contains(window); });
    const std::set<xcb_window_t> known(m_history.begin(), m_history.end());
    std::ranges::copy_if(windows, std::back_inserter(m_history),
        [&](xcb_window_t window) { return !known.contains(window); });
}

std::vector<X11RunningApplications::Identity> X11RunningApplications::identities() const {
    const std::array names {m_atoms[processAtom], m_atoms[leaderAtom], m_atoms[typeAtom],
        m_atoms[gtkEntryAtom], m_atoms[kdeEntryAtom], xcb_atom_t {XCB_ATOM_WM_CLASS},
        xcb_atom_t {XCB_ATOM_WM_CLIENT_MACHINE}};
    std::vector<xcb_get_property_cookie_t> requests;
    for (const xcb_window_t window : m_history) {
        for (const xcb_atom_t name : names)
            requests.push_back(requestProperty(*m_connection, window, name, textRoom));
    }

    const auto isOfApplication = [this](std::uint32_t type) -> std::optional<bool> {
        const auto found = std::find(m_atoms.begin() + firstTypeAtom, m_atoms.end(), type);
        if (found == m_atoms.end())
            return std::nullopt;
        return windowTypes[found - m_atoms.begin() - firstTypeAtom].isOfApplication;
    };
    const std::string thisHost = hostName();
    std::vector<Identity> identities;
    for (auto request = requests.begin(); request != requests.end();) {
        std::array<Property, names.size()> replies;
        for (Property& reply : replies)
            reply = xcbReply(xcb_get_property_reply, *m_connection, *request++);
        const auto& [process, leader, type, gtkEntry, kdeEntry, windowClass, machine] = replies;
        if (!std::ranges::all_of(replies, [](const Property& reply) { return reply != nullptr; }))
            continue; // died meanwhile
        // Of several types the first that is known holds.
        std::optional<bool> isWanted;
        for (const std::uint32_t atom : numbers(type))
            isWanted = isWanted ? isWanted : isOfApplication(atom);
        if (!isWanted.value_or(true))
            continue;
        Identity identity {.leader = firstNumber(leader), .entry = text(gtkEntry)};
        if (identity.entry.empty())
            identity.entry = entryIdentifier(text(kdeEntry));
        auto classes = texts(windowClass, 2);
        identity.instance = std::move(classes[0]);
        identity.windowClass = std::move(classes[1]);
        const std::uint32_t number = firstNumber(process);
        if (text(machine) == thisHost && number <= std::numeric_limits<int>::max())
            identity.process = static_cast<int>(number);
        identities.push_back(std::move(identity));
    }
    return identities;
}

RunningApplication X11RunningApplications::describe(
    const Identity& identity, Entries& entries) const {
    const BundleInfo bundle = identity.process == 0 ? BundleInfo() : bundleOf(identity.process);
    RunningApplication application {bundle.name, bundle.bundlePath, identity.process};
    if (bundle.bundlePath != bundle.executablePath)
        return application; // an application folder or an AppImage
    if (!identity.windowClass.empty())
        application.bundleName = identity.windowClass;
    const auto file = entries.entryOf(identity);
    if (!file)
        return application;
    if (const auto name = file->entry.string(DesktopEntry::mainGroup, "Name"))
        application.bundleName = *name;
    if (bundle.executable.empty() || isInterpreter(bundle.executable))
        application.bundlePath =
            applicationOf(file->entry, m_environment("PATH")).value_or(application.bundlePath);
    return application;
}

} // namespace kw
