// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>
#include <vector>

namespace kw {

/// What an application is called and where it lies. A field that is not known is empty.
struct BundleInfo {
    std::string name; ///< what users call it
    std::string identifier; ///< reverse DNS, as in "org.example.Player"
    std::string version; ///< as users see it
    std::string executable; ///< the program's file name
    std::string bundlePath; ///< what a user moves, deletes or starts: a folder or a file
    std::string executablePath;
    std::string resourcePath; ///< the folder with the localized string tables
};

/// What the desktop knows of the application that runs. Used on any thread.
class KW_EXPORT MainBundle {
public:
    virtual ~MainBundle();
    virtual BundleInfo info() const = 0;
    /// The user's languages, best first, such as "de_AT" and "de".
    virtual std::vector<std::string> preferredLanguages() const = 0;
};

/// Knows nothing; what the host declares is all there is.
class KW_EXPORT UnavailableMainBundle final : public MainBundle {
public:
    BundleInfo info() const override { return {}; }
    std::vector<std::string> preferredLanguages() const override { return {}; }
};

} // namespace kw
