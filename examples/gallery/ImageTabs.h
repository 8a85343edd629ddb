// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/graphics/CGImage.h>

#include <QWidget>

namespace gallery {

class Tour;

/// What can be done to a picture.
class ImageTab : public QWidget {
public:
    /// Premultiplied RGBA with 8 bits each.
    virtual void setPicture(const kw::CGImageRef& picture) = 0;
    /// Uses the tab, which is in front and shows the generated picture, as a visitor would.
    virtual void visit(Tour& tour) = 0;
};

/// Which of an image's representations is best for a size.
ImageTab* makeRepresentationsTab();
/// The picture at another size, in all the ways there are.
ImageTab* makeThumbnailTab();
/// The picture's intensities changed.
ImageTab* makeGammaTab();
/// A mirror image beneath the picture.
ImageTab* makeReflectionTab();
/// The picture painted side by side.
ImageTab* makePatternTab();

} // namespace gallery
