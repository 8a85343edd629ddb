// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/ImageDecoder.h>

namespace kw {

ImageDecoder::~ImageDecoder() = default;

} // namespace kw
