// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace kw::bench {

class QtModel : public QObject {
    Q_OBJECT

public:
    [[gnu::noinline]] void setValue(int value) {
        m_value = value;
        Q_EMIT valueChanged(value);
    }

Q_SIGNALS:
    void valueChanged(int value);

private:
    int m_value = 0;
};

} // namespace kw::bench
