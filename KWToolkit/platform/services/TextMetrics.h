// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSAttributedString.h>
#include <KWToolkit/platform/graphics/NSGeometry.h>
#include <KWToolkit/platform/graphics/TextAttributes.h>

#include <string_view>

namespace kw {

/// Measures text where nothing is being drawn, alone and in a button. Main thread.
class KW_EXPORT TextMetrics {
public:
    virtual ~TextMetrics();

    /// What `text`, in UTF-8, covers on one line for each line of it.
    virtual NSSize sizeOfText(std::string_view text, const TextAttributes& attributes) = 0;
    /// The room that a native push button with this title takes.
    virtual NSSize sizeOfButton(const NSAttributedString& title) = 0;
};

/// Where there are no fonts: every character is half the font size wide, every line 1.25 font sizes
/// high. Around the title of a button there are 8 points at the sides, 4 above and below.
class KW_EXPORT NominalTextMetrics final : public TextMetrics {
public:
    NSSize sizeOfText(std::string_view text, const TextAttributes& attributes) override;
    NSSize sizeOfButton(const NSAttributedString& title) override;
};

} // namespace kw
