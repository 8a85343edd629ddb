// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// One source file or another defines it: a build may have no web pages.
#pragma once

namespace gallery {

/// Before the application is made.
void useWebPages();

} // namespace gallery
