// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>

#include <string>

namespace kw {

/// Offers to move the host into an Applications folder where it runs from somewhere else, such as
/// the Downloads folder. A host calls it early in `main`; what it does, it does before it returns.
/// Main thread.
///
/// The user is asked with an alert. One who agrees gets a copy of the bundle in the Applications
/// folder of the machine, else in the own one where that is there, else in the machine's with the
/// administrator's rights; the old bundle goes to the Trash, a shell waits for this process to end
/// and starts the new bundle, and the application terminates: see `NSApplication::terminate` for
/// when that returns. One who declines is asked again at the next launch, but not after setting the
/// checkbox, nor on an older system, which has none: the user default
/// "moveToApplicationsFolderAlertSuppress" is true then.
///
/// A move that fails is told in an alert, and each step that does on the console; until the copy is
/// complete the host's bundle stays where it is. A program that belongs to no bundle is never
/// moved.
///
/// The texts can be translated: their keys in the strings table "MoveApplication" are the English
/// texts.
KW_EXPORT void PFMoveToApplicationsFolderIfNecessary();

/// Moves a file or folder to the Trash. Without success it is where it was, and the console says
/// so.
KW_EXPORT bool Trash(const std::string& path);

} // namespace kw
