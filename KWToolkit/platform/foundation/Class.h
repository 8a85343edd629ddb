// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/Property.h>
#include <KWToolkit/platform/foundation/SEL.h>

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kw {

class NSObject;

namespace detail {
/// Stands for the types of a result or of arguments; see Message.h.
struct Signature {
    std::string (*encode)();
};
} // namespace detail

/// The code of a method, whatever its types. Implementations are made by `kw::method`.
class KW_EXPORT Implementation {
public:
    Implementation(const detail::Signature& returned, const detail::Signature& arguments)
        : m_returnSignature(&returned)
        , m_argumentsSignature(&arguments) { }
    virtual ~Implementation();

    /// What the code really returns and takes.
    const detail::Signature& returnSignature() const { return *m_returnSignature; }
    const detail::Signature& argumentsSignature() const { return *m_argumentsSignature; }

private:
    const detail::Signature* m_returnSignature;
    const detail::Signature* m_argumentsSignature;
};

/// An entry of a method table. Its type encoding belongs to the entry and its implementation can be
/// exchanged, so the two can come to differ; a message is always checked against the code.
struct Method {
    SEL name;
    std::string typeEncoding;
    std::shared_ptr<const Implementation> implementation;
    /// Set once the implementation came from another entry: only then can it meet an object of a
    /// class it was not written for, and each message has the receiver's class checked.
    bool isTransplanted = false;
};

/// A class as the object runtime sees it: a name, a superclass, a table of methods and one of
/// properties.
///
/// Tables are changed at start-up, before other threads send messages; reading is safe on any
/// thread. A class must outlive its subclasses and objects; usually it is a static that never dies.
class KW_EXPORT Class {
public:
    Class(std::string name, Class& superclass, std::initializer_list<Method> methods = {},
        std::vector<Property> properties = {})
        : Class(std::move(name), &superclass, methods) {
        m_properties = std::move(properties);
    }
    ~Class();
    Class(const Class&) = delete;
    Class& operator=(const Class&) = delete;

    const std::string& name() const { return m_name; }
    /// Null for the root class.
    Class* superclass() const { return m_superclass; }
    bool isSubclassOfClass(const Class& other) const;

    /// The method found in the class or the nearest superclass, or null.
    Method* instanceMethod(SEL selector) const {
        for (std::size_t slot = selector.hash() & m_slotMask;; slot = (slot + 1) & m_slotMask) {
            const Slot& candidate = m_slots[slot];
            if (candidate.name == selector || !candidate.name)
                return candidate.method;
        }
    }

    /// The property declared by the class or the nearest superclass, or null.
    const Property* property(SEL name) const;

    /// Adds a method to this class. Returns false, and changes nothing, if the class itself (not a
    /// superclass) already has one of that name.
    bool addMethod(
        SEL name, std::shared_ptr<const Implementation> implementation, std::string typeEncoding);

    /// Adds a category's methods.
    void addMethods(std::initializer_list<Method> methods);

    /// Replaces the implementation of this class's own method and keeps its type encoding; adds the
    /// method where the class has none of its own.
    void replaceMethod(
        SEL name, std::shared_ptr<const Implementation> implementation, std::string typeEncoding);

    /// Exchanges the code of two methods in place, for every class that has or inherits them.
    static void exchangeImplementations(Method& one, Method& other);

private:
    friend class NSObject;

    // All methods an object answers to, with open addressing; at least one slot is empty.
    struct Slot {
        SEL name;
        Method* method = nullptr;
    };

    Class(std::string name, Class* superclass, std::initializer_list<Method> methods);
    void rebuildSlots();

    std::string m_name;
    Class* m_superclass;
    std::vector<Class*> m_subclasses;
    std::unordered_map<SEL, Method> m_methods;
    std::vector<Property> m_properties;
    // Replaced code is kept: it may be what is running.
    std::vector<std::shared_ptr<const Implementation>> m_retired;
    std::vector<Slot> m_slots;
    std::size_t m_slotMask = 0;
};

} // namespace kw
