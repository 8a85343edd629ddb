// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <exception>
#include <string>
#include <utility>

namespace kw {

/// A platform exception: a name that programs test and a reason that people read.
class KW_EXPORT NSException : public std::exception {
public:
    NSException(std::string name, std::string reason)
        : m_name(std::move(name))
        , m_reason(std::move(reason)) { }
    ~NSException() override;

    const std::string& name() const { return m_name; }
    const std::string& reason() const { return m_reason; }
    const char* what() const noexcept override { return m_reason.c_str(); }

private:
    std::string m_name;
    std::string m_reason;
};

inline constexpr const char* NSInvalidArgumentException = "NSInvalidArgumentException";
inline constexpr const char* NSInternalInconsistencyException = "NSInternalInconsistencyException";
inline constexpr const char* NSRangeException = "NSRangeException";

} // namespace kw
