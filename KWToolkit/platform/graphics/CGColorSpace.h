// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#pragma once

namespace kw {

/// What the components of a color or a pixel mean. Device spaces are those of whatever shows the
/// picture; calibrated ones are independent of it. Nothing here converts between the two: on a
/// desktop without color management they look the same.
enum class CGColorSpace {
    deviceGray,
    deviceRGB,
    deviceCMYK,
    calibratedGray,
    calibratedRGB,
    pattern, ///< a picture is painted, not a color
};

/// How the components of a space are made up, whether it is a device's or a calibrated one.
enum class CGColorSpaceModel { monochrome, RGB, CMYK, pattern };

constexpr CGColorSpaceModel CGColorSpaceGetModel(CGColorSpace space) {
    switch (space) {
    case CGColorSpace::deviceGray:
    case CGColorSpace::calibratedGray:
        return CGColorSpaceModel::monochrome;
    case CGColorSpace::deviceRGB:
    case CGColorSpace::calibratedRGB:
        return CGColorSpaceModel::RGB;
    case CGColorSpace::deviceCMYK:
        return CGColorSpaceModel::CMYK;
    case CGColorSpace::pattern:
        break;
    }
    return CGColorSpaceModel::pattern;
}

/// How many components a color has besides its alpha.
constexpr int CGColorSpaceGetNumberOfComponents(CGColorSpace space) {
    switch (CGColorSpaceGetModel(space)) {
    case CGColorSpaceModel::monochrome:
        return 1;
    case CGColorSpaceModel::RGB:
        return 3;
    case CGColorSpaceModel::CMYK:
        return 4;
    case CGColorSpaceModel::pattern:
        break;
    }
    return 0;
}

} // namespace kw
