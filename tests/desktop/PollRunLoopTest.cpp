// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <backends/linux/posix/PollRunLoop.h>

#include <gtest/gtest.h>
