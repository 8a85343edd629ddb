// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>
#include <system_error>
#include <vector>

namespace kw {

/// This process and others that it starts. Used on any thread.
class KW_EXPORT ProcessService {
public:
    virtual ~ProcessService();

    virtual int processIdentifier() const = 0;

    /// Starts a program, given by its absolute path, that goes on when this process ends, and does
    /// not wait for it. The error is why it does not run.
    ///
    /// Shells that it starts find a program "open", which starts the application at the path that
    /// is its argument.
    virtual std::error_code launch(
        const std::string& program, const std::vector<std::string>& arguments) = 0;
};

/// Starts nothing.
class KW_EXPORT UnavailableProcessService final : public ProcessService {
public:
    int processIdentifier() const override { return 0; }
    std::error_code launch(const std::string&, const std::vector<std::string>&) override;
};

} // namespace kw
