// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/headless/RecordingGraphicsContext.h>

#include <algorithm>

namespace kw {

NSSize RecordingGraphicsContext::sizeOfText(
    std::string_view text, const TextAttributes& attributes) {
    const auto characters =
        std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; });
    return {
        static_cast<double>(characters) * attributes.font.size * 0.5, attributes.font.size * 1.25};
}

} // namespace kw
