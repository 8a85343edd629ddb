// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// A host of its own URL scheme: prints what links tell it.
#include <KWToolkit/KWToolkit.h>
#include <KWToolkitLinux/UrlScheme.h>

#include <algorithm>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

namespace {

constexpr const char* scheme = "kwtoolkit-example";
constexpr const char* usage =
    "usage: 03-url-scheme [URL...]\n"
    "       03-url-scheme --install | --remove\n"
    "  URL        kwtoolkit-example://say&!p!&WORD&!p!&WORD... or kwtoolkit-example://quit\n"
    "  --install  let links of the scheme start this program\n"
    "  --remove   take that back\n"
    "Prints what the URLs tell, until it is told to quit. Only one runs: the next start hands its\n"
    "URLs to it and ends.\n";

/// Its methods are what a URL can name.
class Listener final : public kw::NSObject {
public:
    static kw::Class& classObject() {
        static kw::Class object("Listener", kw::NSObject::classObject(),
            {
                kw::method("say:", &Listener::say),
                kw::method("quit:", &Listener::quit),
                kw::method("unhandledUrlCall:", &Listener::unhandledUrlCall),
            });
        return object;
    }
    kw::Class& isa() const override { return classObject(); }

private:
    void say(const std::vector<std::string>& words) {
        std::cout << "say";
        for (const std::string& word : words)
            std::cout << " '" << kw::urlDecode(word) << "'";
        std::cout << '\n';
    }
    void quit(const std::vector<std::string>&) { kw::Platform::runLoop().stop(); }
    void unhandledUrlCall(const std::string& url) {
        std::cout << "cannot be understood: " << url << '\n';
    }
};

int fail(const std::error_code& error) {
    if (!error)
        return 0;
    std::cerr << "03-url-scheme: " << error.message() << '\n';
    return 1;
}

int receive(const std::vector<std::string>& urls) {
    switch (kw::Platform::urlEvents().receive(urls)) {
    case kw::UrlReception::elsewhere:
        std::cout << "handed over" << '\n';
        return 0;
    case kw::UrlReception::unanswered:
        std::cout << "the one that runs does not answer" << '\n';
        return 1;
    case kw::UrlReception::argumentsOnly:
        std::cout << "there is no bus, and no other URL will come" << '\n';
        break;
    case kw::UrlReception::here:
        std::cout << "waiting for URLs" << '\n';
        break;
    }
    Listener listener;
    const kw::KWUrlDelegate dispatcher(listener);
    kw::Platform::runLoop().run();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    std::cout << std::unitbuf; // whoever reads it reads along
    kw::NSBundle::mainBundle().declare({
        .name = "URL scheme example",
        .identifier = "org.kwtoolkit.examples.UrlScheme",
    });
    if (arguments == std::vector<std::string> {"--install"})
        return fail(kw::installUrlScheme(scheme));
    if (arguments == std::vector<std::string> {"--remove"})
        return fail(kw::removeUrlScheme(scheme));
    if (std::ranges::any_of(arguments, [](const auto& url) { return url.starts_with('-'); })) {
        std::cerr << usage;
        return 2;
    }
    return receive(arguments);
}
