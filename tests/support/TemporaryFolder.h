// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <string_view>

namespace kw::test {

/// An empty folder of the test's own, gone when the test ends.
class TemporaryFolder {
public:
    explicit TemporaryFolder(
        const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
        std::random_device random;
        do
            m_path = parent / ("kw-" + std::to_string(random()));
        while (!std::filesystem::create_directory(m_path));
        m_path = std::filesystem::canonical(m_path);
    }
    ~TemporaryFolder() { std::filesystem::remove_all(m_path); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path(std::string_view relative = {}) const {
        return relative.empty() ? m_path.string() : (m_path / relative).string();
    }

    /// Writes a file, with the folders above it, and returns its path.
    std::string write(std::string_view relative, std::string_view content) const {
        std::filesystem::create_directories((m_path / relative).parent_path());
        std::ofstream(m_path / relative, std::ios::binary) << content;
        return path(relative);
    }
    std::string writeProgram(std::string_view relative) const {
        const auto file = write(relative, "");
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
        return file;
    }
    std::string read(std::string_view relative) const {
        std::ifstream file(m_path / relative, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::set<std::string> names(std::string_view relative = {}) const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path(relative)))
            names.insert(entry.path().filename().string());
        return names;
    }

private:
    std::filesystem::path m_path;
};

} // namespace kw::test
