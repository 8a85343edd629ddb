// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include <stdlib.h>

namespace kw::test {

/// A folder that is gone at the end of the test, with what is in it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string path = (std::filesystem::temp_directory_path() / "kw-test.XXXXXX").string();
        if (!::mkdtemp(path.data()))
            throw std::runtime_error("no temporary folder");
        m_path = path;
    }
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path(const std::string& name) const { return (m_path / name).string(); }
    std::string path() const { return m_path.string(); }

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
