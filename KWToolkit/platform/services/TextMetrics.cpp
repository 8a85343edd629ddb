// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/services/TextMetrics.h>

#include <algorithm>

namespace kw {

TextMetrics::~TextMetrics() = default;

NSSize NominalTextMetrics::sizeOfText(std::string_view text, const TextAttributes& attributes) {
    const double size = attributes.font.drawnSize();
    double widest = 0;
    double lines = 0;
    for (std::size_t at = 0; at <= text.size(); ++lines) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string_view line = text.substr(at, end - at);
        widest = std::max(widest, static_cast<double>(std::ranges::count_if(line, [](char byte) {
            return (byte & 0xC0) != 0x80;
        })));
        at = end + 1;
    }
    return {widest * size * 0.5, lines * size * 1.25};
}

NSSize NominalTextMetrics::sizeOfButton(const NSAttributedString& title) {
    const NSSize text = sizeOfText(title.string(), TextAttributes());
    return {text.width + 16, text.height + 8};
}

} // namespace kw
