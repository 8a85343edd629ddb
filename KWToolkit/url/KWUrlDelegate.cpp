// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/url/KWUrlDelegate.h>

#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/Message.h>
#include <KWToolkit/url/KWUrlDelegateHelper.h>

#include <exception>
#include <string>
#include <vector>

namespace kw {

Class& KWUrlDelegate::classObject() {
    static auto& object = *new Class("KWUrlDelegate", NSObject::classObject(),
        {method("urlDelegateManager:withReplyEvent:", &KWUrlDelegate::urlDelegateManager)});
    return object;
}

std::shared_ptr<KWUrlDelegate> KWUrlDelegate::KWUrlDelegateWithListener(WeakReference listener) {
    return std::make_shared<KWUrlDelegate>(std::move(listener));
}

KWUrlDelegate::KWUrlDelegate(WeakReference listener) {
    setDelegate(std::move(listener));
    NSAppleEventManager::sharedAppleEventManager().setEventHandler(
        *this, SEL("urlDelegateManager:withReplyEvent:"), kInternetEventClass, kAEGetURL);
    Platform::urlEvents().listen();
}

void KWUrlDelegate::urlDelegateManager(
    const NSAppleEventDescriptor& event, const NSAppleEventDescriptor&) {
    const std::string url = event.directObject; // the event may end within the call
    try {
        dispatch(url);
    } catch (const std::exception& exception) {
        reportFailure(url, exception.what());
    }
}

void KWUrlDelegate::dispatch(const std::string& url) const {
    std::vector<std::string> parameters = KWUrlDelegateHelper::parametersFromString(url);
    const std::string name = parameters.front() + ":";
    parameters.erase(parameters.begin());
    const auto listener = delegate();
    if (!listener)
        return;
    // The class, made at the latest here, has made the selectors of all its methods.
    const Class& cls = listener->isa();
    const SEL selector = SEL::existing(name);
    // Deliberate: not a word about an unknown command.
    if (cls.instanceMethod(selector))
        send(*listener, selector, std::move(parameters));
}

void KWUrlDelegate::reportFailure(const std::string& url, const char* reason) const {
    Console& console = Platform::console();
    const auto listener = delegate();
    console.writeLine("error in the url management with url: " + url + " \nexception: " + reason);
    console.writeLine("listener " + (listener ? listener->description() : "(null)"));
    static const SEL fallback("unhandledUrlCall:");
    if (!listener || !listener->respondsToSelector(fallback)) {
        console.writeLine("dont get selector");
        return;
    }
    console.writeLine("before call");
    send(*listener, fallback, url);
    console.writeLine("after call");
}

} // namespace kw
