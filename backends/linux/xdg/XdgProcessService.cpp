// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/xdg/XdgProcessService.h>

#include <backends/linux/posix/DetachedProcess.h>
#include <backends/linux/xdg/OpenProgram.h>

#include <unistd.h>

#include <utility>

namespace kw {

XdgProcessService::XdgProcessService(Environment environment)
    : m_environment(std::move(environment)) { }

int XdgProcessService::processIdentifier() const { return ::getpid(); }

std::error_code XdgProcessService::launch(
    const std::string& program, const std::vector<std::string>& arguments) {
    if (!program.starts_with('/'))
        return std::make_error_code(std::errc::invalid_argument);
    std::error_code error;
    std::string folder = folderWithOpenProgram(error, m_environment);
    // PATH has no way to say what has a colon in it.
    if (error || folder.find(':') != folder.npos)
        folder.clear();
    std::vector<std::string> command {program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return startDetached(command, folder);
}

} // namespace kw
