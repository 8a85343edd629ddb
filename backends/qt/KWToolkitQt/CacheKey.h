// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QPointer>
#include <QString>
#include <QStringView>

#include <array>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace kw::qt {

/// The bytes of values as a text: what Qt's caches look up by.
class CacheKey {
public:
    template <class Value>
        requires std::is_arithmetic_v<Value> || std::is_enum_v<Value>
    CacheKey& operator<<(Value value) {
        std::array<char16_t, (sizeof value + 1) / 2> units {};
        std::memcpy(units.data(), &value, sizeof value);
        m_text += QStringView(units.data(), units.size());
        return *this;
    }
    CacheKey& operator<<(std::string_view bytes) {
        *this << bytes.size();
        m_text += QLatin1String(bytes.data(), static_cast<qsizetype>(bytes.size()));
        return *this;
    }
    CacheKey& operator<<(const QString& part) {
        m_text += part;
        return *this;
    }
    const QString& text() const { return m_text; }

private:
    QString m_text;
};

/// A `Value` that lives as long as the application: what refers to fonts must not outlive it.
template <class Value>
Value& ofApplication() {
    struct Holder : QObject {
        using QObject::QObject;
        Value value;
    };
    static QPointer<Holder> holder;
    if (!holder)
        holder = new Holder(QCoreApplication::instance());
    return holder->value;
}

} // namespace kw::qt
