// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Copying an application: the toolkit, which leaves the copy on the disk, beside `cp -a`, which
// does not, and beside `cp -a` with the `sync -f` that makes up for it.
#include <KWToolkit/platform/services/FileSystem.h>
#include <backends/linux/posix/PosixFileSystem.h>
#include <bench/RatioReporter.h>
#include <tests/support/TemporaryFolder.h>

#include <functional>
#include <unistd.h>

#include <cstdlib>
#include <random>
#include <string>

namespace {

constexpr int folders = 100;
constexpr int filesEach = 50;
constexpr std::size_t fileSize = 40'000;

/// 5,000 files with 200 MB, in the folder that the benchmark is started in.
class Application {
public:
    Application() {
        std::mt19937 random; // NOLINT(bugprone-random-generator-seed): always the same bytes
        std::string content(fileSize, '\0');
        for (int folder = 0; folder < folders; ++folder) {
            for (int file = 0; file < filesEach; ++file) {
                for (char& byte : content)
                    byte = static_cast<char>(random());
                m_folder.write(
                    "Player.app/" + std::to_string(folder) + "/" + std::to_string(file), content);
            }
        }
    }
    std::string path() const { return m_folder.path("Player.app"); }
    /// Another one each time: some file systems take long over a place that was free just now.
    std::string nextCopyPath() { return m_folder.path(std::to_string(++m_copies) + ".app"); }

private:
    kw::test::TemporaryFolder m_folder {std::filesystem::current_path()};
    int m_copies = 0;
};

using Copy = std::function<bool(const std::string& from, const std::string& to)>;

void measure(benchmark::State& state, Application& application, const Copy& copy) {
    for (auto _ : state) {
        state.PauseTiming();
        const std::string to = application.nextCopyPath();
        ::sync(); // what one has left to write is not the next one's to wait for
        state.ResumeTiming();
        if (!copy(application.path(), to))
            state.SkipWithError("not copied");
    }
}

bool shell(const std::string& command) { return std::system(command.c_str()) == 0; }

std::string cp(const std::string& from, const std::string& to) {
    return "cp -a '" + from + "' '" + to + "'";
}

} // namespace

int main(int argc, char** argv) {
    if (!kw::bench::initializeInTurns(argc, argv, 5, "0.01"))
        return 1;
    Application application;
    const std::pair<const char*, Copy> rows[] = {
        {"toolkit",
            [](const auto& from, const auto& to) {
                return !kw::PosixFileSystem().copyItem(from, to);
            }},
        {"cp", [](const auto& from, const auto& to) { return shell(cp(from, to)); }},
        {"cp_and_sync",
            [](const auto& from, const auto& to) {
                return shell(cp(from, to) + " && sync -f '" + to + "'");
            }},
    };
    for (const auto& row : rows)
        benchmark::RegisterBenchmark(
            row.first, [&](benchmark::State& state) { measure(state, application, row.second); })
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);

    kw::bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    for (const char* const other : {"cp/real_time", "cp_and_sync/real_time"})
        reporter.printRatio("toolkit/real_time", other);
}
