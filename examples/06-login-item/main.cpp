// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// A program that starts when the user logs in, or does not.
#include <KWToolkit/KWToolkit.h>

#include <iostream>
#include <string>
#include <system_error>
#include <vector>

namespace {

constexpr const char* usage =
    "usage: 06-login-item add [--hidden] | remove | status\n"
    "  add     start this program, first of all, when the user logs in\n"
    "  remove  take that back, for every login item with 06-login-item in its path\n"
    "  status  tell what the login items are; exits with 1 if this program is none\n";

// What is looked for in the paths of login items.
const std::string name = "06-login-item";

int report(const std::error_code& error, const char* done) {
    if (error) {
        std::cerr << name << ": " << error.message() << '\n';
        return 2;
    }
    std::cout << done << '\n';
    return 0;
}

int status() {
    switch (kw::KWStartUpUtils::wasStartedAtLogin()) {
    case kw::LoginLaunch::hidden:
        std::cout << "started at login, to be hidden\n";
        break;
    case kw::LoginLaunch::shown:
        std::cout << "started at login\n";
        break;
    case kw::LoginLaunch::none:
        break;
    }
    for (const kw::LoginItem& item : kw::Platform::loginItems().read())
        std::cout << "login item: " << item.path.value_or("a program that is not there")
                  << (item.isHidden ? ", hidden" : "") << '\n';
    const bool isItem = kw::KWStartUpUtils::ApplicationIsStartUpItem(name);
    std::cout << (isItem ? "starts at login\n" : "does not start at login\n");
    return isItem ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    using Words = std::vector<std::string>;
    kw::NSBundle::mainBundle().declare({
        .name = "Login item example",
        .identifier = "org.kwtoolkit.examples.LoginItem",
    });
    const Words words(argv + 1, argv + argc);
    const bool isHidden = words == Words {"add", "--hidden"};
    if (words == Words {"add"} || isHidden)
        return report(kw::KWStartUpUtils::addApplicationToStartUpItems(name, isHidden),
            isHidden ? "starts at login, to be hidden" : "starts at login");
    if (words == Words {"remove"})
        return report(
            kw::KWStartUpUtils::removeApplicationToLogin(name), "does not start at login");
    // A login item is started without arguments.
    if (words == Words {"status"}
        || (words.empty() && kw::KWStartUpUtils::wasStartedAtLogin() != kw::LoginLaunch::none))
        return status();
    std::cerr << usage;
    return 64;
}
