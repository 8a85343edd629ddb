// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// A message in the system log and in the program's own file: 02-logging warning no sound card
#include <KWToolkit/KWToolkit.h>
#include <KWToolkitLinux/CrashReportWriter.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

constexpr const char* usage =
    "usage: 02-logging LEVEL TEXT...\n"
    "       02-logging --crash\n"
    "  LEVEL    emergency, alert, critical, error, warning, notice, info or debug\n"
    "  TEXT     the message\n"
    "  --crash  crash, and leave a report that the next start tells of\n";

struct Level {
    std::string_view name;
    void (kw::GDASLLog::*log)(std::string_view message);
};

constexpr Level levels[] {
    {"emergency", &kw::GDASLLog::emergency},
    {"alert", &kw::GDASLLog::alert},
    {"critical", &kw::GDASLLog::critical},
    {"error", &kw::GDASLLog::error},
    {"warning", &kw::GDASLLog::warning},
    {"notice", &kw::GDASLLog::notice},
    {"info", &kw::GDASLLog::info},
    {"debug", &kw::GDASLLog::debug},
};

const Level& levelNamed(const std::string& name) {
    const auto* const level = std::ranges::find(levels, name, &Level::name);
    if (level == std::end(levels))
        throw std::invalid_argument("there is no level '" + name + "'");
    return *level;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text = words.front();
    for (auto word = words.begin() + 1; word != words.end(); ++word)
        text += " " + *word;
    return text;
}

/// Once for each crash.
void tellOfLastTime() {
    if (const auto report = kw::KWCrashLogFinder::lastCrashReportPath())
        std::cout << "crashed the last time: " << *report << '\n' << std::flush;
    else
        std::cout << "no crash to report\n" << std::flush;
}

int log(const Level& level, const std::string& text) {
    const std::string message = kw::messageFromText(text);

    // The program's own channel, which has a file.
    kw::GDASLLog& own = kw::KWFileLogger::sharedKWFileLogger().log();
    (own.*level.log)(message);

    // A channel that a module puts under a name, and any other finds there.
    auto& channels = kw::GDASLLogManager::sharedInstance();
    channels.setLog(
        std::make_shared<kw::GDASLLog>("02-logging.module", "local0", /*connectImmediately*/ false),
        "module");
    const auto module = channels.getLogForKey("module");
    (*module.*level.log)(message);

    std::cout << own.unsentMessageCount() + module->unsentMessageCount()
              << " of 2 messages did not reach the system log\n";
    if (own.fd() >= 0)
        return 0;
    std::cerr << "02-logging: the log file cannot be opened\n";
    return 1;
}

// What the sanitizers would report is what it is for.
__attribute__((noinline, no_sanitize("undefined"))) int crash() {
    const int* volatile nothing = nullptr;
    return *nothing;
}

int crashWithReport() {
    if (const std::error_code error = kw::installCrashReportWriter()) {
        std::cerr << "02-logging: no crash report can be written: " << error.message() << '\n';
        return 1;
    }
    return crash();
}

int run(const std::vector<std::string>& arguments) {
    const bool isCrash = arguments == std::vector<std::string> {"--crash"};
    if (!isCrash && arguments.size() < 2)
        throw std::invalid_argument("what is to be logged?");
    const Level* const level = isCrash ? nullptr : &levelNamed(arguments.front());

    kw::NSBundle::mainBundle().declare({
        .name = "02-logging",
        .identifier = "org.kwtoolkit.examples.Logging",
        .version = "1.0",
    });
    std::cout << "log file: " << kw::KWPathUtils::applicationSupportFolder() << "/debugLog\n";
    tellOfLastTime();
    return level ? log(*level, joined({arguments.begin() + 1, arguments.end()}))
                 : crashWithReport();
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::invalid_argument& error) {
        std::cerr << "02-logging: " << error.what() << "\n" << usage;
        return 2;
    }
}
