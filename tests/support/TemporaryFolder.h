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
#include <vector>

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

inline std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The lines of a file; the last must have an end.
inline std::vector<std::string> readLines(const std::string& path) {
    const std::string text = readFile(path);
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = text.find('\n', begin);
        lines.push_back(end == text.npos ? "no end of line" : text.substr(begin, end - begin));
        begin = end == text.npos ? text.size() : end + 1;
    }
    return lines;
}

} // namespace kw::test
