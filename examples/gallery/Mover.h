// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// "Mover", an application that the gallery's own program is when it runs from "Mover.app".
#pragma once

namespace gallery {

bool isMover();

/// Offers to move itself within its home folder, and says where it runs from, in a window and,
/// once that is in front, on standard error.
int runMover(int argc, char** argv);

} // namespace gallery
