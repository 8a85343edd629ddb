// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/controls/KWControlledView.h>
#include <KWToolkit/controls/KWEmbossedTextField.h>
#include <KWToolkit/controls/KWEvenSeparatorView.h>
#include <KWToolkit/controls/KWOddSeparatorView.h>
#include <KWToolkit/controls/KWPillBadge.h>
#include <KWToolkit/controls/KWSeparatorView.h>
#include <KWToolkit/controls/KWShadowedTextField.h>
#include <KWToolkit/hotkeys/KWHotkeyView.h>
#include <KWToolkit/platform/ui/NSButton.h>
#include <KWToolkit/platform/ui/NSNib.h>
#include <KWToolkit/platform/ui/NSTextField.h>
#include <KWToolkit/platform/ui/NSView.h>
#include <KWToolkit/platform/ui/WebView.h>

namespace kw {

namespace {

template <class... Views>
bool registerAll() {
    (registerViewClass<Views>(), ...);
    return true;
}

/// The classes that layout files may name from the start. (Of an archive, the linker would leave
/// this file out; the library is always a shared one.)
[[maybe_unused]] const bool areRegistered = registerAll<NSView, NSTextField, NSButton, KWPillBadge,
    KWShadowedTextField, KWEmbossedTextField, KWSeparatorView, KWEvenSeparatorView,
    KWOddSeparatorView, KWControlledView, KWHotkeyView, WebView>();

} // namespace

} // namespace kw
