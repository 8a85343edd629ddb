// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/graphics/NSAttributedString.h>
#include <KWToolkit/platform/ui/NSControl.h>

#include <string>

namespace kw {

enum class NSBezelStyle { rounded = 1, texturedRounded = 11 };

/// A push button: a native one of whoever shows the views, so it draws nothing itself. Main thread.
class KW_EXPORT NSButton : public NSControl {
public:
    using NSControl::NSControl;

    static Class& classObject();
    Class& isa() const override { return classObject(); }
    bool isFlipped() const override { return true; }

    std::string title() const { return m_title.string(); }
    /// Without attributes.
    void setTitle(std::string title) { setAttributedTitle(NSAttributedString(std::move(title))); }
    const NSAttributedString& attributedTitle() const { return m_title; }
    void setAttributedTitle(NSAttributedString title);

    /// The key that clicks it from anywhere in the window: "\r" makes it the default button, "\033"
    /// takes Escape. Empty for none.
    const std::string& keyEquivalent() const { return m_keyEquivalent; }
    void setKeyEquivalent(std::string key);

    /// How it looks: the desktop draws those that it does not know as rounded ones.
    NSBezelStyle bezelStyle() const { return m_bezelStyle; }
    void setBezelStyle(NSBezelStyle style);
    /// Makes it as large as the desktop wants a button with that title; its origin stays.
    void sizeToFit();

    /// As if the user had clicked; nothing while it is disabled.
    void performClick();

    bool performKeyEquivalent(const NSEvent& event) override;
    NSAccessibilityRole accessibilityRole() const override { return NSAccessibilityRole::button; }
    std::string accessibilityLabel() const override;
    bool accessibilityPerformPress() override;

private:
    NSAttributedString m_title;
    std::string m_keyEquivalent;
    NSBezelStyle m_bezelStyle = NSBezelStyle::rounded;
};

} // namespace kw
