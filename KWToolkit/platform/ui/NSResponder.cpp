// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/ui/NSResponder.h>

namespace kw {

namespace {

void passOn(
    const NSResponder& from, void (NSResponder::*message)(const NSEvent&), const NSEvent& event) {
    if (NSResponder* const next = from.nextResponder())
        (next->*message)(event);
}

} // namespace

Class& NSResponder::classObject() {
    static auto& object = *new Class("NSResponder", NSObject::classObject());
    return object;
}

NSResponder* NSResponder::nextResponder() const {
    return static_cast<NSResponder*>(m_nextResponder.lock().get());
}

void NSResponder::setNextResponder(NSResponder* responder) { m_nextResponder = responder; }

void NSResponder::keyDown(const NSEvent& event) { passOn(*this, &NSResponder::keyDown, event); }
void NSResponder::keyUp(const NSEvent& event) { passOn(*this, &NSResponder::keyUp, event); }
void NSResponder::flagsChanged(const NSEvent& event) {
    passOn(*this, &NSResponder::flagsChanged, event);
}
void NSResponder::mouseDown(const NSEvent& event) { passOn(*this, &NSResponder::mouseDown, event); }
void NSResponder::mouseUp(const NSEvent& event) { passOn(*this, &NSResponder::mouseUp, event); }
void NSResponder::mouseDragged(const NSEvent& event) {
    passOn(*this, &NSResponder::mouseDragged, event);
}
void NSResponder::mouseMoved(const NSEvent& event) {
    passOn(*this, &NSResponder::mouseMoved, event);
}
void NSResponder::mouseEntered(const NSEvent& event) {
    passOn(*this, &NSResponder::mouseEntered, event);
}
void NSResponder::mouseExited(const NSEvent& event) {
    passOn(*this, &NSResponder::mouseExited, event);
}

} // namespace kw
