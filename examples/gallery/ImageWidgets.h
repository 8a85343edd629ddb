// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

#include <KWToolkit/platform/graphics/CGImage.h>
#include <KWToolkit/platform/graphics/NSBezierPath.h>
#include <KWToolkitQt/ViewWidget.h>

#include <QButtonGroup>
#include <QLabel>
#include <QSlider>
#include <QStringList>

#include <functional>
#include <vector>

namespace gallery {

class Tour;

enum class Ground { chequered, dark };
enum class Excess { shrunk, cutOff };

/// Shows images in its middle, one beneath the other, a pixel a point.
class ImageWidget final : public kw::qt::ViewWidget {
public:
    /// `excess` is what happens to images for which there is no room.
    explicit ImageWidget(
        QSize least, Ground ground = Ground::chequered, Excess excess = Excess::shrunk);

    /// Nothing is shown of images that are null.
    void setImages(std::vector<kw::CGImageRef> images);
    /// Puts a frame around it.
    void setMarked(bool isMarked);
};

/// A slider with its value in words beside it.
class ValueSlider final : public QWidget {
public:
    struct Range {
        int least, most, start;
        int click; ///< how far a click beside the handle goes
    };
    ValueSlider(const Range& range, std::function<QString(int)> words);

    int value() const { return m_slider->value(); }
    void onChange(const std::function<void()>& call);

    enum class Side { left, right };
    /// Clicks at an end, and waits for the words.
    void click(Tour& tour, Side side, const QString& expectedWords);

private:
    QSlider* m_slider;
    QLabel* m_words;
};

/// Radio buttons in rows of two; their ids count from 0, which is chosen.
QButtonGroup* choice(QWidget& parent, const QStringList& titles);

/// A tab: what is set on the left, what is seen on the right.
void arrange(QWidget& tab, QLayout* settings, QLayout* pictures);

kw::NSBezierPath outlineOf(const kw::NSRect& rect);

/// What is written beneath a picture.
QLabel* caption(const QString& text = {}, bool isBold = false);

QString sizeText(double width, double height, const char* unit);
QString sizeText(const kw::CGImageRef& image);

/// A picture to begin with: colorful, with text and transparency in it.
kw::CGImageRef generatedPicture();

} // namespace gallery
