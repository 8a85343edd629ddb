// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/FileSystem.h>

namespace kw {

/// Files with the dates that links have of their own, and with what this process may do to them.
class KW_EXPORT PosixFileSystem final : public StandardFileSystem {
public:
    bool isWritable(const std::string& path) override;
    /// See copyFileTree.
    std::error_code copyItem(const std::string& path, const std::string& to) override;

protected:
    std::optional<FileDate> modificationDate(const std::filesystem::path& path) const override;
};

} // namespace kw
