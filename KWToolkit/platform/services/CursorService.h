// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/Export.h>
#include <KWToolkit/platform/ui/NSCursor.h>

namespace kw {

/// Shows the mouse pointer over the host's views. Main thread.
class KW_EXPORT CursorService {
public:
    virtual ~CursorService();

    /// Until another is set, or the pointer leaves what shows the view that it is over. Without
    /// such a view it does nothing.
    virtual void set(NSCursor cursor) = 0;
};

/// Where there is no pointer.
class KW_EXPORT UnavailableCursorService final : public CursorService {
public:
    void set(NSCursor) override { }
};

} // namespace kw
