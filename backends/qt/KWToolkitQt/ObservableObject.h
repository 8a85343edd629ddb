// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/foundation/NSObject.h>

#include <memory>

class QObject;

namespace kw::qt {

/// A Qt object as one whose properties are read, written and observed by their names:
///
///     kw::addObserverForKeyPath(*kw::qt::observable(slider), "value",
///         [](kw::NSObject&, const kw::NSKeyValueChange& change) { … });
///
/// The same at each call for as long as the Qt object lives, which keeps it alive. After that it
/// reads as nothing, cannot be written, and nobody is told of anything. What is answered in a
/// constructor or destructor of the Qt object has the properties of that class, and its observers
/// are told also when there is another for the whole object.
///
/// Properties are those of the object's class, without what is added at run time (as by QML or for
/// D-Bus). A truth value, a
/// number, an enumeration and a QString travel as NSKeyValueCoding.h has it, a QObject as what this
/// function makes of it, so that key paths lead through it, and anything else as a QVariant. What a
/// property does not take is an `NSException` named "NSInvalidArgumentException", and so is writing
/// when the Qt object is gone.
///
/// A property with a notify signal tells its observers when that is emitted, on the thread that
/// emits it, and what they throw is written to `Platform::console()`. An old value is known only to
/// a write by the property's name, which tells once, signal or not.
///
/// Use it on the Qt object's thread: properties are read and written on the caller's, at once. Only
/// what tells of changes may come on any.
KW_EXPORT std::shared_ptr<NSObject> observable(QObject& object);

} // namespace kw::qt
