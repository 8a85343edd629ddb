// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// What is used where nobody chose otherwise. Each build of the library has one source file that
// defines this function for the ports that a desktop makes a difference to: the backend's where
// there is one, else DefaultServices.cpp. Platform.cpp defines the others.
#pragma once

#include <memory>

namespace kw::detail {

/// Defined for each port that Platform.h lists.
template <class Service>
std::unique_ptr<Service> makeDefaultService();

} // namespace kw::detail
