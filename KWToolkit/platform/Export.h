// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

/// Marks what the shared library offers. Everything else stays hidden.
#define KW_EXPORT __attribute__((visibility("default")))
