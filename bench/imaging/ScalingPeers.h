// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Who scales pictures, each as a host would call it, with its best setting that compares.
#pragma once

#include <bench/imaging/Pictures.h>

#include <functional>
#include <span>

namespace kw::bench {

/// A picture and a size that are ready to be scaled as often as wanted. Throws what goes wrong.
struct Scaling {
    /// Gives the seconds it took where the peer times itself, else 0.
    std::function<double()> run;
    /// What the last run made, in the picture's order of channels.
    std::function<Bytes()> result;
};

struct ScalingPeer {
    const char* name;
    /// The picture is borrowed.
    Scaling (*prepare)(const Picture& picture, Size size);
    bool timesItself = false;
};

/// The toolkit is the first.
std::span<const ScalingPeer> scalingPeers();

Scaling scalingByToolkit(const Picture& picture, Size size);
/// Runs in Qt's pool, which should have one thread.
Scaling scalingByQt(const Picture& picture, Size size);
/// The resizing alone, from planes to planes; the filters are ready.
Scaling scalingByZimg(const Picture& picture, Size size);
/// From interleaved pixels to interleaved pixels, with all that takes.
Scaling scalingByZimgInterleaved(const Picture& picture, Size size);
/// Shrinks by whole factors first, to no less than twice the size.
Scaling scalingByVipsDefault(const Picture& picture, Size size);
Scaling scalingByVipsWhole(const Picture& picture, Size size);
Scaling scalingByOpenCVArea(const Picture& picture, Size size);
/// Looks at eight by eight pixels, also where it leaves many out.
Scaling scalingByOpenCVLanczos(const Picture& picture, Size size);
/// The filters are ready.
Scaling scalingBySwscale(const Picture& picture, Size size);
Scaling scalingByLibyuv(const Picture& picture, Size size);
Scaling scalingByStb(const Picture& picture, Size size);
Scaling scalingByPillow(const Picture& picture, Size size);

} // namespace kw::bench
