// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Asks with a web page.
#include <KWToolkit/KWToolkit.h>
#include <KWToolkitQtWeb/QtWeb.h>

#include <QApplication>

#include <iostream>
#include <memory>
#include <optional>
#include <string>

namespace {

constexpr const char* usage =
    "usage: 13-html-modal [ADDRESS [FIRST SECOND]]\n"
    "Shows the page at ADDRESS (\"file:///...\" in UTF-16, or \"https://...\") above two buttons "
    "and\n"
    "prints which of them was pressed. Links open in the desktop's browser.\n";

/// Hands what the user clicks to the desktop; the page itself leads nowhere.
class Links final : public kw::NSObject {
public:
    static kw::Class& classObject() {
        static kw::Class object("Links", kw::NSObject::classObject(),
            {kw::method("webView:decidePolicyForNavigationAction:request:frame:decisionListener:",
                &Links::decide)});
        return object;
    }
    kw::Class& isa() const override { return classObject(); }

    void decide(kw::WebView&, const kw::WebNavigationAction& action, const std::string& request,
        kw::WebFrame&, kw::WebPolicyDecisionListener& listener) {
        if (action.type == kw::WebNavigationType::linkClicked)
            kw::Platform::workspace().openURL(request);
        listener.ignore();
    }
};

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 || argc > 4 || (argc > 1 && argv[1][0] == '-')) {
        std::cerr << usage;
        return 2;
    }
    const QApplication application(argc, argv);
    kw::qt::useQtWeb();

    Links links;
    const auto url = argc > 1 ? std::optional<std::string>(argv[1]) : std::nullopt;
    const int code = kw::KWHtmlModal::htmlWindowWithSize(
        {500, 400}, url, argc > 2 ? argv[2] : "OK", argc > 2 ? argv[3] : "Cancel", links);
    std::cout << code << "\n";
    return 0;
}
