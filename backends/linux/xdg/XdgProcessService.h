// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/ProcessService.h>
#include <backends/linux/posix/Environment.h>

namespace kw {

/// Starts programs whose PATH begins with the folder that holds the program "open"; see
/// folderWithOpenProgram. Where the user has no cache folder to put that in, it is the desktop's
/// own "open" that they find, if there is one.
class KW_EXPORT XdgProcessService final : public ProcessService {
public:
    explicit XdgProcessService(Environment environment = processEnvironment);

    int processIdentifier() const override;
    std::error_code launch(
        const std::string& program, const std::vector<std::string>& arguments) override;

private:
    Environment m_environment;
};

} // namespace kw
