// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/appservices/PFMoveApplication.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>
#include <KWToolkit/platform/foundation/NSUserDefaults.h>
#include <KWToolkit/platform/ui/NSApplication.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <tuple>
#include <vector>

namespace kw {

namespace {

constexpr const char* suppressionKey = "moveToApplicationsFolderAlertSuppress";

// The keys of the texts, and the texts where they are not translated.
constexpr const char* kMoveTitle = "Move to Applications folder?";
constexpr const char* kMoveTitleHome = "Move to Applications folder in your Home folder?";
constexpr const char* kMoveInfo = "I can move myself to the Applications folder if you'd like.";
constexpr const char* kMoveInfoHome =
    "You don't have permissions to put me in the main Applications folder, but I can move myself "
    "to the Applications folder in your Home folder instead.";
constexpr const char* kNeedsPassword = "Note that this will require an administrator password.";
constexpr const char* kInDownloads = "This will keep your Downloads folder uncluttered.";
constexpr const char* kMove = "Move to Applications Folder";
constexpr const char* kDoNotMove = "Do Not Move";
constexpr const char* kCouldNotMove = "Could not move to Applications folder";

std::string localized(const char* key) {
    return NSBundle::mainBundle().localizedStringForKey(key, "", "MoveApplication");
}

void log(const std::string& line) { Platform::console().writeLine(line); }

/// With the suppression checkbox, the downloads folders, and copies by the file manager.
bool isNewerSystem() { return std::floor(NSAppKitVersionNumber()) > 824; }

// Deliberate: a plain prefix, so "/ApplicationsOld" counts as "/Applications".
bool isInAnyOf(const std::vector<std::string>& folders, const std::string& path) {
    return std::ranges::any_of(
        folders, [&](const std::string& folder) { return path.starts_with(folder); });
}

bool isInApplicationsFolder(const std::string& bundlePath) {
    const SearchPaths& paths = Platform::searchPaths();
    return isInAnyOf(paths.applicationFolders(SearchPathDomain::user), bundlePath)
        || isInAnyOf(paths.applicationFolders(SearchPathDomain::local), bundlePath);
}

bool isInDownloadsFolder(const std::string& bundlePath) {
    if (isNewerSystem())
        return isInAnyOf(Platform::searchPaths().downloadsFolders(), bundlePath);
    return lastPathComponent(stringByDeletingLastPathComponent(bundlePath)) == "Downloads";
}

std::optional<std::string> lastApplicationsFolder(SearchPathDomain domain) {
    auto folders = Platform::searchPaths().applicationFolders(domain);
    return folders.empty() ? std::nullopt : std::optional(std::move(folders.back()));
}

struct Destination {
    std::optional<std::string> folder;
    bool needsAuthorization = false;
    bool isInHome = false;
};

Destination chosenDestination() {
    FileSystem& files = Platform::fileSystem();
    auto mainFolder = lastApplicationsFolder(SearchPathDomain::local);
    if (mainFolder && !files.fileExists(*mainFolder))
        mainFolder = std::nullopt;
    if (mainFolder && files.isWritable(*mainFolder))
        return {.folder = mainFolder};

    log("Can't write to /Applications, checking ~/Applications");
    const auto userFolder = lastApplicationsFolder(SearchPathDomain::user);
    log("User applicationsDirectory: " + userFolder.value_or("(null)"));
    if (userFolder && files.isWritable(*userFolder))
        return {.folder = userFolder, .isInHome = true};
    return {.folder = mainFolder, .needsAuthorization = true};
}

NSAlert offer(const Destination& destination, const std::string& bundlePath) {
    NSAlert alert;
    alert.setMessageText(localized(destination.isInHome ? kMoveTitleHome : kMoveTitle));
    std::string information = localized(destination.isInHome ? kMoveInfoHome : kMoveInfo);
    if (destination.needsAuthorization)
        information += " " + localized(kNeedsPassword);
    else if (isInDownloadsFolder(bundlePath))
        information += " " + localized(kInDownloads);
    alert.setInformativeText(std::move(information));
    alert.addButtonWithTitle(localized(kMove));
    alert.addButtonWithTitle(localized(kDoNotMove));
    if (isNewerSystem()) {
        alert.setShowsSuppressionButton(true);
        alert.suppressionButton().controlSize = NSControlSize::small;
        alert.suppressionButton().font = NSFont::systemFontOfSize(NSFont::smallSystemFontSize);
    }
    return alert;
}

/// Whether the user agrees. Remembers who does not want to be asked again.
bool isAgreedTo(NSAlert alert) {
    if (alert.runModal() == NSAlertFirstButtonReturn)
        return true;
    // Deliberate: without the checkbox, declining once is for good.
    if (!isNewerSystem() || alert.suppressionButton().isOn) {
        // Who cannot be remembered is asked again.
        std::ignore = NSUserDefaults::standardUserDefaults().setObject(true, suppressionKey);
    }
    return false;
}

bool copyBundle(const std::string& bundlePath, const std::string& destinationPath) {
    FileSystem& files = Platform::fileSystem();
    if (files.fileExists(destinationPath) && !Trash(destinationPath))
        return false;
    if (isNewerSystem()) {
        const std::error_code error = files.copyItem(bundlePath, destinationPath);
        if (!error)
            return true;
        log("Could not copy '" + bundlePath + "' to '" + destinationPath + "' (" + error.message()
            + ")");
    }
    log("ERROR -- Could not copy myself to /Applications");
    return false;
}

enum class AuthorizedCopy { success, canceled, failed };

bool isBlank(std::string_view path) { return path.find_first_not_of(" \t") == path.npos; }

AuthorizedCopy copyBundleWithAuthorization(
    const std::string& bundlePath, const std::string& destinationPath) {
    using enum AuthorizedCopy;
    // What is to be removed as the administrator is an application, and never nothing.
    if (!destinationPath.ends_with(".app") || isBlank(bundlePath))
        return failed;
    const auto authorization = Platform::authorization().create();
    if (!authorization)
        return failed;
    const auto status = authorization->copyRights(kAuthorizationRightExecute,
        kAuthorizationFlagInteractionAllowed | kAuthorizationFlagExtendRights
            | kAuthorizationFlagPreAuthorize);
    if (status != AuthorizationStatus::granted)
        return status == AuthorizationStatus::canceled ? canceled : failed;

    const auto run = [&](const char* program, const std::vector<std::string>& arguments) {
        return authorization->executeWithPrivileges(program, arguments) ? authorization->wait()
                                                                        : std::nullopt;
    };
    // Deliberate: of the removal only that it came to its end counts (there may be nothing to
    // remove), of the copy that it did so with 0.
    constexpr int signalBits = 0x7F, signalAndExitBits = 0xFF7F;
    const auto removal = run("/bin/rm", {"-rf", destinationPath});
    if (!removal || (*removal & signalBits) != 0)
        return failed;
    const auto copy = run("/bin/cp", {"-pR", bundlePath, destinationPath});
    return copy && (*copy & signalAndExitBits) == 0 ? success : failed;
}

void relaunchFrom(const std::string& path) {
    ProcessService& processes = Platform::processes();
    const std::string process = std::to_string(processes.processIdentifier());
    // Deliberate: a quote in the path is not escaped, and the command does not work then.
    // Without a shell the user starts the application, which is in its new place.
    std::ignore = processes.launch("/bin/sh",
        {"-c",
            "while [ `ps -p " + process + " | wc -l` -gt 1 ]; do sleep 0.1; done; open '" + path
                + "'"});
    NSApplication::sharedApplication().terminate();
}

void showFailure() {
    NSAlert alert;
    alert.setMessageText(localized(kCouldNotMove));
    alert.runModal();
}

void move(const std::string& bundlePath, const Destination& destination) {
    log("Moving myself to the Applications folder");
    const std::string path = destination.folder
        ? stringByAppendingPathComponent(*destination.folder, lastPathComponent(bundlePath))
        : std::string();
    if (destination.needsAuthorization) {
        switch (copyBundleWithAuthorization(bundlePath, path)) {
        case AuthorizedCopy::success:
            break;
        case AuthorizedCopy::canceled:
            log("INFO -- Not moving because user canceled authorization");
            return;
        case AuthorizedCopy::failed:
            log("ERROR -- Could not copy myself to /Applications with authorization");
            showFailure();
            return;
        }
    } else if (!copyBundle(bundlePath, path)) {
        showFailure();
        return;
    }
    if (!Trash(bundlePath)) {
        log("WARNING -- Could not delete application after moving it to Applications folder");
    }
    relaunchFrom(path);
}

} // namespace

void PFMoveToApplicationsFolderIfNecessary() {
    if (NSUserDefaults::standardUserDefaults().boolForKey(suppressionKey))
        return;
    const BundleInfo bundle = NSBundle::mainBundle().info();
    const bool isBareProgram = bundle.bundlePath == bundle.executablePath;
    if (isBareProgram || isInApplicationsFolder(bundle.bundlePath))
        return;
    if (!Platform::fileSystem().isWritable(bundle.bundlePath)) {
        log("No access to delete the app. Not offering to move it.");
        return;
    }
    const Destination destination = chosenDestination();
    if (isAgreedTo(offer(destination, bundle.bundlePath)))
        move(bundle.bundlePath, destination);
}

bool Trash(const std::string& path) {
    if (!Platform::workspace().moveToTrash(
            stringByDeletingLastPathComponent(path), lastPathComponent(path)))
        return true;
    log("ERROR -- Could not trash '" + path + "'");
    return false;
}

} // namespace kw
