// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/WebPreferences.h>

#include <KWToolkit/platform/Platform.h>

namespace kw {

WebPreferences& WebPreferences::standardPreferences() {
    static auto& preferences = *new WebPreferences;
    return preferences;
}

void WebPreferences::changed() { Platform::web().settingsChanged(); }

} // namespace kw
