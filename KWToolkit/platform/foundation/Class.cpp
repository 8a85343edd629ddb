// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/platform/foundation/Class.h>

#include <algorithm>
#include <bit>
#include <mutex>
#include <utility>

namespace kw {

namespace {

// Classes are made lazily, on any thread: guards the lists of subclasses.
std::mutex& hierarchyMutex() {
    static auto& mutex = *new std::mutex;
    return mutex;
}

} // namespace

Implementation::~Implementation() = default;

Class::Class(std::string name, Class* superclass, std::initializer_list<Method> methods)
    : m_name(std::move(name))
    , m_superclass(superclass) {
    for (const Method& method : methods)
        m_methods.insert_or_assign(method.name, method);
    const std::lock_guard lock(hierarchyMutex());
    if (m_superclass)
        m_superclass->m_subclasses.push_back(this);
    rebuildSlots();
}

Class::~Class() {
    const std::lock_guard lock(hierarchyMutex());
    if (m_superclass)
        std::erase(m_superclass->m_subclasses, this);
}

bool Class::isSubclassOfClass(const Class& other) const {
    for (const Class* cls = this; cls; cls = cls->m_superclass) {
        if (cls == &other)
            return true;
    }
    return false;
}

const Property* Class::property(SEL name) const {
    for (const Class* cls = this; cls; cls = cls->m_superclass) {
        const auto found = std::ranges::find(cls->m_properties, name, &Property::name);
        if (found != cls->m_properties.end())
            return &*found;
    }
    return nullptr;
}

bool Class::addMethod(
    SEL name, std::shared_ptr<const Implementation> implementation, std::string typeEncoding) {
    const std::lock_guard lock(hierarchyMutex());
    const bool added = m_methods
                           .try_emplace(name,
                               Method {name, std::move(typeEncoding), std::move(implementation),
                                   /*isTransplanted*/ true})
                           .second;
    if (added)
        rebuildSlots();
    return added;
}

void Class::addMethods(std::initializer_list<Method> methods) {
    for (const Method& method : methods)
        addMethod(method.name, method.implementation, method.typeEncoding);
}

void Class::replaceMethod(
    SEL name, std::shared_ptr<const Implementation> implementation, std::string typeEncoding) {
    if (addMethod(name, implementation, std::move(typeEncoding)))
        return;
    Method& method = m_methods.at(name);
    m_retired.push_back(std::exchange(method.implementation, std::move(implementation)));
    method.isTransplanted = true;
}

void Class::exchangeImplementations(Method& one, Method& other) {
    std::swap(one.implementation, other.implementation);
    one.isTransplanted = other.isTransplanted = true;
}

void Class::rebuildSlots() {
    std::vector<Method*> answered;
    answered.reserve(m_methods.size());
    for (auto& [name, method] : m_methods)
        answered.push_back(&method);
    if (m_superclass) {
        for (const Slot& inherited : m_superclass->m_slots) {
            if (inherited.method && !m_methods.contains(inherited.method->name))
                answered.push_back(inherited.method);
        }
    }

    m_slots.assign(std::bit_ceil(2 * answered.size() + 1), Slot {});
    m_slotMask = m_slots.size() - 1;
    for (Method* method : answered) {
        std::size_t slot = method->name.hash() & m_slotMask;
        while (m_slots[slot].method)
            slot = (slot + 1) & m_slotMask;
        m_slots[slot] = {method->name, method};
    }
    for (Class* subclass : m_subclasses)
        subclass->rebuildSlots();
}

} // namespace kw
