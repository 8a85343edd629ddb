// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/Class.h>
#include <KWToolkit/platform/foundation/SEL.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace kw {

namespace detail {
struct ObjectExtras;
class ObservationInfo;

/// Which properties of an object are observed: a bit each, which few may share.
struct ObservedKeys {
    std::atomic<std::uint64_t> mask = 0;
    static std::uint64_t bit(SEL key) { return std::uint64_t {1} << key.hash() % 64; }
};
} // namespace detail

struct NSKeyValueChange;

/// The base of everything that can be a target, a delegate, a listener, an observed object or the
/// owner of associated values.
///
/// An object may live anywhere: on the stack, in a member, in a `std::shared_ptr`. Owning it by
/// `std::shared_ptr` adds one thing: whoever refers to it weakly can keep it alive while using it.
///
/// A class that takes messages by name (see Message.h) lists them once and says which it is:
///
///     class Player : public kw::NSObject {
///     public:
///         void toggle();
///         void open(const std::string& file);
///
///         static kw::Class& classObject() {
///             static kw::Class object("Player", kw::NSObject::classObject(), {
///                 kw::method("toggle", &Player::toggle),
///                 kw::method("open:", &Player::open),
///             });
///             return object;
///         }
///         kw::Class& isa() const override { return classObject(); }
///     };
class KW_EXPORT NSObject : public std::enable_shared_from_this<NSObject> {
public:
    NSObject() = default;
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;

    /// Clears the weak references to the object, ends the observations of it, then releases its
    /// associated values.
    virtual ~NSObject();

    /// The root class. It has no methods.
    static Class& classObject();

    /// The class of this object. Override it together with a static `classObject`.
    virtual Class& isa() const;

    bool isKindOfClass(const Class& cls) const { return isa().isSubclassOfClass(cls); }

    /// What the object is called in texts for developers: "<Player: 0x55d0c8a2b2c0>".
    virtual std::string description() const;

    /// Whether the object has a method of this name, its own or inherited.
    bool respondsToSelector(SEL selector) const {
        return isa().instanceMethod(selector) != nullptr;
    }

    /// Sends a message without arguments and drops what it returns. Fails like `send`.
    void performSelector(SEL selector);

    /// Called for each change that the object was added as an observer of; see
    /// NSKeyValueObserving.h. This one throws an `NSException`: a class that observes handles it.
    virtual void observeValueForKeyPath(const std::string& keyPath, NSObject& object,
        const NSKeyValueChange& change, const void* context);

    /// Whether somebody may have to be told when the property changes. Any thread.
    bool isObserved(SEL key) const {
        const auto* const observed = m_observations.load(std::memory_order_acquire);
        return observed
            && (observed->mask.load(std::memory_order_relaxed) & detail::ObservedKeys::bit(key));
    }

private:
    friend struct detail::ObjectExtras;
    friend class detail::ObservationInfo;

    // What few objects have (weak references, associated values), made on first use.
    std::atomic<detail::ObjectExtras*> m_extras = nullptr;
    // Who observes it, made on first use. Apart from the above, as each change looks here.
    std::atomic<detail::ObservedKeys*> m_observations = nullptr;
};

} // namespace kw
