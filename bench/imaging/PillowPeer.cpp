// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// Pillow, in a Python of its own that times itself: starting it and handing pixels over are no
// part.
#include <bench/imaging/ScalingPeers.h>

#include <tests/support/TemporaryFolder.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

namespace kw::bench {

namespace {

constexpr const char* script = R"(
import sys, time
from PIL import Image
folder, mode, raw, width, height, to_width, to_height = sys.argv[1:]
with open(folder + "/pixels", "rb") as file:
    image = Image.frombytes(mode, (int(width), int(height)), file.read(), "raw", raw)
size = (int(to_width), int(to_height))
image.resize(size, Image.LANCZOS)
times = []
for _ in range(3):
    begin = time.process_time_ns()
    result = image.resize(size, Image.LANCZOS)
    times.append(time.process_time_ns() - begin)
with open(folder + "/result", "wb") as file:
    file.write(result.tobytes("raw", raw))
with open(folder + "/time", "w") as file:
    file.write(str(sorted(times)[1]))
)";

} // namespace

Scaling scalingByPillow(const Picture& picture, Size size) {
    // The interpreter that Debian's packages are for.
    const std::string python = "/usr/bin/python3";
    if (std::system((python + " -c 'import PIL' 2>/dev/null").c_str()) != 0)
        throw std::runtime_error("python3-pil is not installed");
    const auto folder = std::make_shared<test::TemporaryFolder>();
    folder->write(
        "pixels", {reinterpret_cast<const char*>(picture.pixels.data()), picture.pixels.size()});
    std::string command = python + " '" + folder->write("resize.py", script) + "' '"
        + folder->path() + (picture.isOpaque ? "' RGB BGRX" : "' RGBa RGBa");
    for (const int side : {picture.size.width, picture.size.height, size.width, size.height})
        command += " " + std::to_string(side);
    return {[=] {
                if (std::system(command.c_str()) != 0)
                    throw std::runtime_error("Pillow does not scale");
                return std::stod(folder->read("time")) / 1e9;
            },
        [=] {
            const std::string result = folder->read("result");
            return Bytes(result.begin(), result.end());
        }};
}

} // namespace kw::bench
