// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Which applications run, the one that was active last first; and a program that relaunches itself.
#include <KWToolkit/KWToolkit.h>

#include <unistd.h>

#include <iostream>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr const char* usage =
    "usage: 07-running-applications [--watch | --relaunch]\n"
    "Prints the applications that run, the one that was active last first.\n"
    "  --watch     print them again whenever another one comes to the front\n"
    "  --relaunch  end, and let the desktop start this program again, which prints them\n";

constexpr double watchInterval = 0.2; // in seconds

using Applications = std::optional<std::vector<kw::RunningApplication>>;

void print(const Applications& applications) {
    if (!applications) {
        std::cout << "nothing runs, or the desktop cannot tell\n";
        return;
    }
    for (const auto& [name, path, process] : *applications)
        std::cout << name << " (" << process << ") " << path << '\n';
}

void watch(const std::optional<kw::RunningApplication>& formerFront) {
    const Applications applications = kw::KWActiveApplications::activeApplications();
    const auto front = applications ? std::optional(applications->front()) : std::nullopt;
    if (front != formerFront) {
        std::cout << '\n';
        print(applications);
    }
    kw::Platform::runLoop().callAfter(watchInterval, [front] { watch(front); });
}

} // namespace

int main(int argc, char** argv) {
    const std::string option = argc == 2 ? argv[1] : "";
    std::cout << std::unitbuf; // whoever reads it reads along
    if (argc > 2 || (argc == 2 && option != "--watch" && option != "--relaunch")) {
        std::cerr << usage;
        return 2;
    }
    if (option == "--relaunch") {
        std::cout << "process " << ::getpid() << " ends\n";
        kw::relaunchApp();
        return 1; // the application goes on
    }
    std::cout << "process " << ::getpid() << '\n';
    const Applications applications = kw::KWActiveApplications::activeApplications();
    print(applications);
    if (option == "--watch") {
        watch(applications ? std::optional(applications->front()) : std::nullopt);
        kw::Platform::runLoop().run();
    }
    return 0;
}
