// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Being told of changes of properties.
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>
#include <KWToolkit/platform/foundation/SEL.h>

#include <any>
#include <string_view>
#include <utility>

namespace kw {

// How a class lets its properties be observed: a setter changes the property within
// `changeValueForKey`, or, where that is one member, with `setAndNotify`. While nobody observes the
// property, that costs no more than a look at a pointer and a bit.
//
//     class Document : public kw::NSObject {
//     public:
//         const std::string& title() const { return m_title; }
//         void setTitle(std::string title) {
//             kw::setAndNotify(*this, titleKey, m_title, std::move(title));
//         }
//
//         static kw::Class& classObject() {
//             static kw::Class object("Document", kw::NSObject::classObject(), {},
//                 {kw::property("title", &Document::title, &Document::setTitle)});
//             return object;
//         }
//         kw::Class& isa() const override { return classObject(); }
//
//     private:
//         static inline const kw::SEL titleKey {"title"};
//         std::string m_title;
//     };

enum class NSKeyValueChangeKind {
    setting = 1,
};

/// What an observer is told about a change.
struct NSKeyValueChange {
    NSKeyValueChangeKind kind = NSKeyValueChangeKind::setting;
    std::any newValue; ///< nothing where it was not asked for, or where there is none
    std::any oldValue; ///< the same
    bool isPrior = false; ///< told before the change
};

/// What an observer asks to be told besides that there was a change.
struct NSKeyValueObservingOptions {
    bool newValue = false;
    bool oldValue = false;
    bool initial = false; ///< also what is there, before adding the observer returns
    bool prior = false; ///< also before each change, with the old value where that was asked for
};

namespace detail {
struct Observation;
}
/// What `addObserver` answers. Valid until the observer is removed or the object dies.
using NSKeyValueObservation = detail::Observation*;

/// Has `observer.observeValueForKeyPath` called, on the thread that makes the change, whenever the
/// value at the key path changes: the property itself, or an object in the middle of the path that
/// is replaced by another. Observers are called in the order in which they were added, and not
/// for the change during which they were. `context` comes with each call; its address tells one's
/// own registrations from those of a superclass.
///
/// Neither object is kept alive. The observer must be removed before it dies; when the observed
/// object dies the observation ends by itself. A key that the class does not declare can be
/// observed, too (`didChangeValueForKey` tells of it), but no path leads through it.
///
/// Any thread. An exception from an observer leaves the function that made the change; those that
/// were added later are not told of it. One that leaves `addObserver` (of a getter on the path, or
/// of the observer when it is told initially) has ended the observation. Null is answered where it
/// was removed meanwhile.
KW_EXPORT NSKeyValueObservation addObserver(NSObject& object, NSObject& observer,
    std::string_view keyPath, NSKeyValueObservingOptions options = {},
    const void* context = nullptr);

/// Ends an observation. The observer is not called for it any more on this thread, in a change that
/// is being told neither; a call that another thread has begun may still be running. Any thread.
/// Constant time.
KW_EXPORT void removeObserver(NSObject& object, NSKeyValueObservation observation);

/// Ends the observer's newest observation of the key path with that context. Where there is none,
/// nothing happens and false is returned. Any thread. Looks through the key's observers.
KW_EXPORT bool removeObserver(
    NSObject& object, NSObject& observer, std::string_view keyPath, const void* context = nullptr);

/// Tell of a change by hand, the one before and the other after it, on one thread. They may be
/// nested; within a change of a property, other changes of the same property of the same object are
/// part of it, and told of with it. `did` without `will` tells of a change without an old value.
KW_EXPORT void willChangeValueForKey(NSObject& object, SEL key);
KW_EXPORT void didChangeValueForKey(NSObject& object, SEL key);

namespace detail {
/// Whether something is to be done before a change of the object, too.
KW_EXPORT bool needsWillChange(const NSObject& object);
/// `didChangeValueForKey` where nothing was.
KW_EXPORT void tellOfChange(NSObject& object, SEL key);
/// Takes back a `willChangeValueForKey`: what was to be changed was not.
KW_EXPORT void abandonChange(NSObject& object, SEL key);

template <class Change>
void changeAnnounced(NSObject& object, SEL key, Change&& change) {
    willChangeValueForKey(object, key);
    try {
        std::forward<Change>(change)();
    } catch (...) {
        abandonChange(object, key);
        throw;
    }
    didChangeValueForKey(object, key);
}
} // namespace detail

/// Calls `change`, which changes a property, and tells the observers. An exception from `change` is
/// let through, and nothing told of. The object must live until the first observer is called, with
/// one that is told before the change until `change` has returned; after that, observers may let go
/// of it, and so may a thread that they wait for.
template <class Change>
void changeValueForKey(NSObject& object, SEL key, Change&& change) {
    if (!object.isObserved(key)) [[likely]] {
        std::forward<Change>(change)();
    } else if (detail::needsWillChange(object)) {
        detail::changeAnnounced(object, key, std::forward<Change>(change));
    } else {
        std::forward<Change>(change)();
        detail::tellOfChange(object, key);
    }
}

/// Assigns to the member that holds a property's value and tells the observers, also where the
/// value stays the same.
template <class Member, class Value>
void setAndNotify(NSObject& object, SEL key, Member& member, Value&& value) {
    changeValueForKey(object, key, [&] { member = std::forward<Value>(value); });
}

} // namespace kw
