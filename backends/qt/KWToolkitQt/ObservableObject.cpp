// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/ObservableObject.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkit/platform/foundation/NSException.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/foundation/NSKeyValueObserving.h>

#include <QMetaObject>
#include <QMetaProperty>
#include <QObject>
#include <QScopeGuard>
#include <QString>
#include <QVariant>

#include <algorithm>
#include <any>
#include <atomic>
#include <cstdint>
#include <iterator>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kw::qt {

namespace {

/// How values of one of Qt's types travel.
struct Conversion {
    int type;
    std::any (*read)(const QVariant& value);
    QVariant (*write)(const std::any& value);
};

template <class T>
constexpr Conversion asIs(QMetaType::Type type) {
    return {type, [](const QVariant& value) { return boxed(value.value<T>()); },
        [](const std::any& value) { return QVariant::fromValue(unboxed<T>(value)); }};
}

constexpr Conversion conversions[] {
    asIs<bool>(QMetaType::Bool),
    asIs<int>(QMetaType::Int),
    asIs<uint>(QMetaType::UInt),
    asIs<double>(QMetaType::Double),
    asIs<float>(QMetaType::Float),
    asIs<qlonglong>(QMetaType::LongLong),
    asIs<qulonglong>(QMetaType::ULongLong),
    asIs<long>(QMetaType::Long),
    asIs<ulong>(QMetaType::ULong),
    asIs<short>(QMetaType::Short),
    asIs<ushort>(QMetaType::UShort),
    asIs<char>(QMetaType::Char),
    asIs<signed char>(QMetaType::SChar),
    asIs<uchar>(QMetaType::UChar),
    {QMetaType::QString,
        [](const QVariant& value) { return boxed(value.toString().toStdString()); },
        [](const std::any& value) {
            return QVariant(QString::fromStdString(unboxed<std::string>(value)));
        }},
};

const Conversion* conversionFor(QMetaType type) {
    const auto* const found = std::ranges::find(conversions, type.id(), &Conversion::type);
    return found == std::end(conversions) ? nullptr : found;
}

bool isObject(QMetaType type) { return type.flags().testFlag(QMetaType::PointerToQObject); }

std::any travelling(const QVariant& value) {
    const QMetaType type = value.metaType();
    if (!type.isValid())
        return {};
    if (const Conversion* const conversion = conversionFor(type))
        return conversion->read(value);
    if (type.flags().testFlag(QMetaType::IsEnumeration))
        return boxed(value.toLongLong());
    if (isObject(type)) {
        auto* const object = value.value<QObject*>();
        return object ? boxed(observable(*object)) : std::any();
    }
    return value;
}

template <class... Held>
std::optional<QVariant> heldAs(const std::any& value) {
    std::optional<QVariant> result;
    const auto take = [&](const auto* held) {
        if (held)
            result = QVariant::fromValue(*held);
    };
    (take(std::any_cast<Held>(&value)), ...);
    return result;
}

class ObservableObject;

/// A write by the name of a property that is under way on this thread.
struct Write {
    const ObservableObject* object;
    int property;
    const Write* outer;
};
thread_local const Write* innermostWrite = nullptr;

/// The nearest meta-object that is never freed: only moc writes the function that is looked for.
const QMetaObject& staticMetaObjectOf(const QObject& object) {
    const QMetaObject* meta = object.metaObject();
    while (!meta->d.static_metacall && meta->superClass())
        meta = meta->superClass();
    return *meta;
}

/// What the runtime knows of a class of Qt's.
struct ObservableClass {
    std::unique_ptr<Class> isa;
    std::vector<SEL> keys; // of all properties, by their indices
};
const ObservableClass& classOf(const QMetaObject& meta);

void forget(const QObject& object);

/// Receives an object's notify signals, as many slots as it has properties.
class Receiver final : public QObject {
public:
    explicit Receiver(ObservableObject& owner)
        : m_owner(owner) { }
    int qt_metacall(QMetaObject::Call call, int method, void** arguments) override;

private:
    ObservableObject& m_owner;
};

class ObservableObject final : public NSObject {
public:
    explicit ObservableObject(QObject& object)
        : m_object(&object)
        , m_meta(staticMetaObjectOf(object))
        , m_class(classOf(m_meta))
        , m_receiver(*this) {
        const int firstSlot = QObject::staticMetaObject.methodCount();
        for (int i = 0; i < m_meta.propertyCount(); ++i) {
            const QMetaProperty property = m_meta.property(i);
            const bool isOverridden = m_meta.indexOfProperty(property.name()) != i;
            if (property.hasNotifySignal() && !isOverridden)
                QMetaObject::connect(&object, property.notifySignalIndex(), &m_receiver,
                    firstSlot + i, Qt::DirectConnection);
        }
        m_untilDestroyed = QObject::connect(
            &object, &QObject::destroyed, &m_receiver,
            [this](const QObject* destroyed) {
                m_object = nullptr;
                forget(*destroyed); // which may be the end of this
            },
            Qt::DirectConnection);
    }

    Class& isa() const override { return *m_class.isa; }

    /// Null where it is gone, or going and no longer what it was.
    QObject* object() const {
        QObject* const object = m_object;
        return object && m_untilDestroyed && object->metaObject()->inherits(&m_meta) ? object
                                                                                     : nullptr;
    }
    /// Whether its object lives and is no other class than when this was made, which may have been
    /// in a constructor or destructor.
    bool isUpToDate(const QMetaObject& meta) const { return m_untilDestroyed && &m_meta == &meta; }
    /// Keeps the one that it replaces, and with it what observes that.
    void replace(std::shared_ptr<ObservableObject> former) {
        if (former && former->m_untilDestroyed)
            m_former = std::move(former);
    }

    std::any read(const QMetaProperty& property) const {
        const QObject* const from = object();
        return from ? travelling(property.read(from)) : std::any();
    }

    void write(const QMetaProperty& property, const std::any& value) {
        QObject* const to = object();
        if (!to)
            throw NSException(NSInvalidArgumentException, "the object of Qt's is gone");
        const QVariant converted = convertedFor(property, value);
        const Write write {this, property.propertyIndex(), innermostWrite};
        const auto end = qScopeGuard([&] { innermostWrite = write.outer; });
        innermostWrite = &write;
        if (!property.write(to, converted))
            detail::throwUnsuitableValue(value, property.metaType().name());
    }

    void propertyChanged(int property) {
        const SEL key = m_class.keys[static_cast<std::size_t>(property)];
        if (!isObserved(key))
            return;
        for (const Write* write = innermostWrite; write; write = write->outer) {
            if (write->object == this && write->property == property)
                return; // is told of when it is done
        }
        const auto alive = shared_from_this();
        callGuarded([&] { detail::tellOfChange(*this, key); });
    }

private:
    static QVariant enumerator(QMetaType type, const std::any& value) {
        const auto number = unboxed<qlonglong>(value);
        QVariant result(number);
        if (!result.convert(type) || result.toLongLong() != number)
            detail::throwUnsuitableValue(value, type.name());
        return result;
    }

    static QVariant convertedFor(const QMetaProperty& property, const std::any& value) {
        const QMetaType type = property.metaType();
        if (const Conversion* const conversion = conversionFor(type))
            return conversion->write(value);
        if (property.isEnumType())
            return enumerator(type, value);
        if (isObject(type)) {
            const auto given = unboxed<std::shared_ptr<NSObject>>(value);
            const auto* const adapter = dynamic_cast<const ObservableObject*>(given.get());
            QObject* const object = adapter ? adapter->object() : nullptr;
            const QMetaObject* const needed = type.metaObject();
            if (given && (!object || (needed && !object->metaObject()->inherits(needed))))
                detail::throwUnsuitableValue(value, type.name());
            return QVariant(
                type, static_cast<const void*>(&object)); // Qt converts no null pointers
        }
        // Qt knows what else it makes of a number or a text.
        if (const auto* const text = std::any_cast<std::string>(&value))
            return QString::fromStdString(*text);
        if (auto held = heldAs<QVariant, bool, std::int64_t, std::uint64_t, double>(value))
            return *std::move(held);
        detail::throwUnsuitableValue(value, type.name());
    }

    std::atomic<QObject*> m_object;
    const QMetaObject& m_meta;
    const ObservableClass& m_class;
    std::shared_ptr<ObservableObject> m_former;
    Receiver m_receiver;
    QMetaObject::Connection m_untilDestroyed;
};

int Receiver::qt_metacall(QMetaObject::Call call, int method, void** arguments) {
    const int property = QObject::qt_metacall(call, method, arguments);
    if (property < 0 || call != QMetaObject::InvokeMetaMethod)
        return property;
    m_owner.propertyChanged(property);
    return -1;
}

Property propertyOf(const QMetaProperty& meta, SEL name) {
    Property property {.name = name,
        .get = [meta](NSObject& object) -> std::any {
            return static_cast<ObservableObject&>(object).read(meta);
        },
        .set = {}};
    if (meta.isWritable()) {
        property.set = [meta](NSObject& object, const std::any& value) {
            static_cast<ObservableObject&>(object).write(meta, value);
        };
    }
    return property;
}

/// Made once for each, and never freed.
const ObservableClass& classOf(const QMetaObject& meta) {
    static auto& mutex = *new std::recursive_mutex;
    static auto& classes = *new std::unordered_map<const QMetaObject*, ObservableClass>;
    const std::scoped_lock lock(mutex);
    ObservableClass& made = classes[&meta]; // stays where it is
    if (!made.isa) {
        const ObservableClass* const superclass =
            meta.superClass() ? &classOf(*meta.superClass()) : nullptr;
        if (superclass)
            made.keys = superclass->keys;
        std::vector<Property> properties;
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
            made.keys.emplace_back(meta.property(i).name());
            properties.push_back(propertyOf(meta.property(i), made.keys.back()));
        }
        made.isa = std::make_unique<Class>(meta.className(),
            superclass ? *superclass->isa : NSObject::classObject(),
            std::initializer_list<Method> {}, std::move(properties));
    }
    return made;
}

struct Adapters {
    std::mutex mutex;
    std::unordered_map<const QObject*, std::shared_ptr<ObservableObject>> ofObjects;
};
Adapters& adapters() {
    static auto& all = *new Adapters;
    return all;
}

void forget(const QObject& object) {
    std::unique_lock lock(adapters().mutex);
    const auto node = adapters().ofObjects.extract(&object); // ends outside the lock
    lock.unlock();
}

std::shared_ptr<ObservableObject> knownAdapter(const QObject& object, const QMetaObject& meta) {
    const std::scoped_lock lock(adapters().mutex);
    const auto found = adapters().ofObjects.find(&object);
    return found != adapters().ofObjects.end() && found->second->isUpToDate(meta) ? found->second
                                                                                  : nullptr;
}

} // namespace

std::shared_ptr<NSObject> observable(QObject& object) {
    const QMetaObject& meta = staticMetaObjectOf(object);
    if (auto known = knownAdapter(object, meta))
        return known;
    auto made = std::make_shared<ObservableObject>(object); // calls the object: outside the lock
    std::shared_ptr<ObservableObject> former;
    const std::scoped_lock lock(adapters().mutex);
    auto& known = adapters().ofObjects[&object];
    if (known && known->isUpToDate(meta))
        return known;
    former = std::exchange(known, made);
    made->replace(former);
    return made;
}

} // namespace kw::qt
