// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/SearchPaths.h>
#include <backends/linux/posix/Environment.h>

namespace kw {

/// Applications keep their files in the XDG data home. The temporary folder is TMPDIR where that
/// names an absolute folder, else /tmp. The environment is read at each call.
class KW_EXPORT XdgSearchPaths final : public SearchPaths {
public:
    explicit XdgSearchPaths(Environment environment = processEnvironment);

    std::optional<std::string> homeFolder() const override;
    std::optional<std::string> applicationSupportFolder() const override;
    std::string temporaryFolder() const override;

private:
    Environment m_environment;
};

} // namespace kw
