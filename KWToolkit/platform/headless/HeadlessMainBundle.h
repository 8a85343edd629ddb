// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/services/MainBundle.h>

namespace kw {

/// An application that is what a test says.
class KW_EXPORT HeadlessMainBundle final : public MainBundle {
public:
    BundleInfo info() const override { return values; }
    std::vector<std::string> preferredLanguages() const override { return languages; }

    BundleInfo values {.name = "Host", .identifier = "org.example.Host", .executable = "host"};
    std::vector<std::string> languages;
};

} // namespace kw
