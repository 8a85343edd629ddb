// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkit/logging/KWFileLogger.h>

#include <KWToolkit/appservices/KWPathUtils.h>
#include <KWToolkit/platform/foundation/NSBundle.h>
#include <KWToolkit/platform/foundation/NSPathUtilities.h>

namespace kw {

namespace {

std::string information(const char* key) {
    return NSBundle::mainBundle().objectForInfoDictionaryKey(key).value_or(std::string());
}

} // namespace

Class& KWFileLogger::classObject() {
    static auto& object = *new Class("KWFileLogger", NSObject::classObject());
    return object;
}

KWFileLogger& KWFileLogger::sharedKWFileLogger() {
    static auto& logger = *new KWFileLogger;
    return logger;
}

KWFileLogger::KWFileLogger()
    : m_log(information("CFBundleName"), information("CFBundleIdentifier"),
          /*connectImmediately*/ true) {
    m_log.setLogFile(
        stringByAppendingPathComponent(KWPathUtils::createApplicationSupportFolder(), "debugLog"));
}

} // namespace kw
