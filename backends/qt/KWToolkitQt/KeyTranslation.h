// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/ui/NSEvent.h>

#include <Qt>

#include <cstdint>

class QKeyEvent;

namespace kw::qt {

/// Command is Super (Qt's Meta), Option is Alt.
std::uint32_t modifierFlags(Qt::KeyboardModifiers modifiers);

/// Whether the key is a modifier or a lock, which types nothing and cannot be recorded.
bool isModifierKey(const QKeyEvent& event);

/// The key event in the platform's terms. A modifier key gives `flagsChanged`, with the flags that
/// hold after the change.
NSEvent keyEvent(const QKeyEvent& event);

} // namespace kw::qt
