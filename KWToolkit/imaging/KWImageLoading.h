// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/CGImage.h>

#include <string>
#include <string_view>

namespace kw {

/// The first image of encoded data, or of a file: its pixels as they are stored, in the file's own
/// depth; an orientation tag is not applied. Null for what cannot be read or decoded. Any thread.
KW_EXPORT CGImageRef CreateCGImageFromData(std::string_view data);
KW_EXPORT CGImageRef CreateCGImageFromFile(const std::string& path);

} // namespace kw
