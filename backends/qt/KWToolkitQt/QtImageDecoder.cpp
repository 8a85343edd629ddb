// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtImageDecoder.h>

#include <KWToolkitQt/QtImages.h>
#include <KWToolkitQt/SafeSvg.h>

#include <QBuffer>
#include <QByteArrayView>
#include <QFile>
#include <QGuiApplication>
#include <QIODevice>
#include <QImageReader>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <string_view>
#include <system_error>

namespace kw::qt {

namespace {

/// How a picture can be made smaller while it is decoded.
enum class Reduction { none, byEighths, toAnySize };

/// What Qt's reader of a format does with a picture that is cut off: it says so, or fills up the
/// rest after a read at the end or one that gets less than it asks for.
enum class CutOff { isTold, isReadAtEnd, isShortRead };

struct Format {
    const char* name;
    Reduction reduction;
    CutOff cutOff;
};

constexpr Format formats[] {
    {"bmp", Reduction::none, CutOff::isShortRead},
    {"gif", Reduction::none, CutOff::isReadAtEnd},
    {"jpeg", Reduction::byEighths, CutOff::isReadAtEnd},
    {"png", Reduction::none, CutOff::isTold},
    {"svg", Reduction::toAnySize, CutOff::isTold},
    {"tiff", Reduction::none, CutOff::isTold},
    {"webp", Reduction::none, CutOff::isTold},
};

/// What QImageIOHandler::Transformation means, by its bits.
constexpr std::array<ImageOrientation, 8> orientations {1, 2, 4, 3, 6, 7, 5, 8};

constexpr char startOfMarker = '\xFF'; // in JPEG

/// Encoded bytes, and whether they were found to end too soon.
class Source final : public QIODevice {
public:
    explicit Source(QIODevice& bytes)
        : m_bytes(bytes) {
        open(ReadOnly | Unbuffered);
    }

    bool isSequential() const override { return false; }
    qint64 size() const override { return m_bytes.size(); }
    bool seek(qint64 position) override {
        // A file would let readers behind its end, unlike memory.
        return position <= size() && QIODevice::seek(position) && m_bytes.seek(position);
    }
    /// For JPEG: what has more scans than any real picture counts as cut off there. Each of them
    /// may be a few bytes long and takes a pass over the whole picture.
    void limitScans() { m_scansLeft = maximumScans; }
    void forgetEnds() { m_wasReadAtEnd = m_wasReadShort = false; }
    bool isCutOff(CutOff cutOff) const {
        return (cutOff == CutOff::isReadAtEnd && m_wasReadAtEnd)
            || (cutOff == CutOff::isShortRead && m_wasReadShort);
    }

protected:
    qint64 readData(char* data, qint64 size) override {
        const qint64 count = m_scansLeft < 0 ? 0 : m_bytes.read(data, size);
        countScans(QByteArrayView(data, std::max<qint64>(count, 0)));
        m_wasReadAtEnd |= size > 0 && count <= 0;
        m_wasReadShort |= count < size;
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    static constexpr int maximumScans = 200;

    void countScans(QByteArrayView data) {
        constexpr char startOfScan = '\xDA';
        for (qsizetype i = data.indexOf(startOfScan); i >= 0;
            i = data.indexOf(startOfScan, i + 1)) {
            if ((i > 0 ? data[i - 1] : m_last) == startOfMarker)
                m_scansLeft = std::max(m_scansLeft - 1, -1);
        }
        m_last = data.empty() ? m_last : data.back();
    }

    QIODevice& m_bytes;
    int m_scansLeft = std::numeric_limits<int>::max();
    char m_last = 0;
    bool m_wasReadAtEnd = false;
    bool m_wasReadShort = false;
};

const Format* formatOf(const QImageReader& reader) {
    const QByteArray name = reader.format();
    const auto* const found =
        std::ranges::find_if(formats, [&](const Format& format) { return name == format.name; });
    return found == std::end(formats) ? nullptr : found;
}

bool isWithinLimit(QSize size) { return qt::isWithinLimit(qint64 {size.width()} * size.height()); }

/// Each byte may stand for an edge across the whole picture, which takes Qt up to a nanosecond a
/// pixel: at the maximum about two minutes. The outlines of lines take their time in the smallest
/// picture, too.
bool canBeDrawn(const SafeSvg& svg, QSize size) {
    constexpr double maximumWork = 128e9;
    constexpr double least = 256 * 256;
    const double pixels = static_cast<double>(size.width()) * size.height();
    return isWithinLimit(size)
        && static_cast<double>(svg.work) * std::max(pixels, least) <= maximumWork;
}

/// Whether a PNG picture has 16 bits a component and one color that stands for transparent. Qt 6.4
/// gives pixels of it that were never set.
bool isMisread(QIODevice& png) {
    constexpr qsizetype signatureSize = 8;
    constexpr qint64 checksumSize = 4;
    constexpr qsizetype placeOfDepth = 8, placeOfColorType = 9;
    constexpr char deep = 16, trueColor = 2;
    png.seek(signatureSize);
    for (;;) {
        const QByteArray head = png.read(8);
        if (head.size() < 8)
            return false;
        const qint64 size = qFromBigEndian<quint32>(head.constData());
        const QByteArray type = head.sliced(4);
        const qint64 next = png.pos() + size + checksumSize;
        if (type == "IHDR") {
            const QByteArray body = png.read(placeOfColorType + 1);
            if (body.size() <= placeOfColorType || body[placeOfDepth] != deep
                || body[placeOfColorType] != trueColor)
                return false;
        }
        if (type == "tRNS" || type == "IDAT")
            return type == "tRNS";
        if (!png.seek(next))
            return false;
    }
}

/// Whether all pixels of a JPEG picture are in memory, as large as they are stored, before the
/// first is decoded: where a scan does not hold all components in full. Also where that cannot be
/// told.
bool isDecodedWhole(QIODevice& jpeg) {
    enum Marker { sequential = 0xC0, progressive = 0xC2, lastFrame = 0xCF, startOfScan = 0xDA };
    constexpr std::array noFrames {0xC4, 0xC8, 0xCC};
    constexpr qsizetype placeOfComponents = 5;
    char components = 0;
    jpeg.seek(2);
    for (;;) {
        const QByteArray head = jpeg.read(4);
        if (head.size() < 4 || head[0] != startOfMarker)
            return true;
        const auto at = [&](qsizetype place) { return static_cast<uchar>(head[place]); };
        const QByteArray body = jpeg.read(std::max(0, (at(2) << 8 | at(3)) - 2));
        const int marker = at(1);
        if (marker == startOfScan)
            return body.isEmpty() || body[0] != components;
        if (marker < sequential || marker > lastFrame || std::ranges::count(noFrames, marker) > 0)
            continue;
        if (marker >= progressive || body.size() <= placeOfComponents)
            return true;
        components = body[placeOfComponents];
    }
}

int eighthsOf(int length, int eighths) {
    return static_cast<int>(std::int64_t {length} * eighths / 8);
}

/// The least size that the decoder gives at no loss of time, within the stored one.
QSize reducedSize(Reduction reduction, QSize stored, PixelSize wanted) {
    const auto covers = [&](QSize size) {
        return size.width() >= wanted.width && size.height() >= wanted.height;
    };
    if (reduction == Reduction::byEighths) {
        // Of a side that does not divide libjpeg rounds up and Qt takes the next eighth for that,
        // to scale the result once more. Rounded down, it scales by one pixel at most.
        for (int eighths = 1; eighths < 8; ++eighths) {
            const QSize size(
                eighthsOf(stored.width(), eighths), eighthsOf(stored.height(), eighths));
            if (!size.isEmpty() && covers(size))
                return size;
        }
    }
    if (reduction == Reduction::toAnySize) {
        const double factor = std::max(static_cast<double>(wanted.width) / stored.width(),
            static_cast<double>(wanted.height) / stored.height());
        const auto side = [&](int length) {
            return std::clamp(
                static_cast<int>(std::ceil(std::min(factor, 1.0) * length)), 1, length);
        };
        return {side(stored.width()), side(stored.height())};
    }
    return stored;
}

/// Whether a picture of a stored size may be decoded to a size.
using Permission = std::function<bool(QSize stored, QSize size)>;

DecodedImage decode(QImageReader& reader, Source& source, const Format& format,
    const ImageDecoder::WantedSize& wantedSize, const Permission& permits) {
    const QSize stored = reader.size();
    if (stored.isEmpty())
        return {};
    const ImageOrientation orientation =
        orientations.at(static_cast<std::size_t>(reader.transformation().toInt()));
    QSize size = stored;
    if (wantedSize)
        size = reducedSize(
            format.reduction, stored, wantedSize({stored.width(), stored.height()}, orientation));
    if (!permits(stored, size))
        return {};
    if (size != stored)
        reader.setScaledSize(size);
    source.forgetEnds(); // that were met on the way to the size
    const QImage image = reader.read();
    // Of a broken picture the size may turn out to be another one.
    if (source.isCutOff(format.cutOff) || image.size() != size)
        return {};
    return {imageFromQImage(image), orientation};
}

DecodedImage decode(QIODevice& bytes, const ImageDecoder::WantedSize& wantedSize = {}) {
    Source source(bytes);
    QImageReader reader(&source);
    reader.setDecideFormatFromContent(true);
    const Format* const format = formatOf(reader);
    if (!format)
        return {};
    if (format->name == std::string_view("png")) {
        const bool isWrong = isMisread(source);
        source.seek(0);
        if (isWrong)
            return {};
    }
    switch (format->reduction) {
    case Reduction::none:
        return decode(reader, source, *format, wantedSize, [](QSize, QSize) { return true; });
    case Reduction::byEighths: {
        source.seek(0);
        const bool isWhole = isDecodedWhole(source);
        source.seek(0);
        source.limitScans();
        return decode(reader, source, *format, wantedSize,
            [&](QSize stored, QSize) { return !isWhole || isWithinLimit(stored); });
    }
    case Reduction::toAnySize:
        break;
    }
    // Texts in it need one.
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return {};
    source.seek(0);
    SafeSvg svg = safeSvg(source);
    QBuffer buffer(&svg.text);
    buffer.open(QIODevice::ReadOnly);
    Source svgSource(buffer);
    QImageReader svgReader(&svgSource, format->name);
    return decode(svgReader, svgSource, *format, wantedSize,
        [&](QSize, QSize size) { return canBeDrawn(svg, size); });
}

DecodedImage decodeFile(const std::string& path, const ImageDecoder::WantedSize& wantedSize = {}) {
    // Neither waits for a pipe nor reads a device.
    std::error_code error;
    if (path.find('\0') != std::string::npos || !std::filesystem::is_regular_file(path, error))
        return {};
    // QFile takes no path that is not text.
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> stream(
        std::fopen(path.c_str(), "rbe"), &std::fclose);
    QFile file;
    if (!stream || !file.open(stream.get(), QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    return decode(file, wantedSize);
}

} // namespace

DecodedImage QtImageDecoder::imageFromData(std::string_view data) {
    QByteArray bytes = QByteArray::fromRawData(data.data(), static_cast<qsizetype>(data.size()));
    QBuffer buffer(&bytes);
    return buffer.open(QIODevice::ReadOnly) ? decode(buffer) : DecodedImage {};
}

DecodedImage QtImageDecoder::imageFromFile(const std::string& path) { return decodeFile(path); }

DecodedImage QtImageDecoder::reducedImageFromFile(
    const std::string& path, const WantedSize& wantedSize) {
    return decodeFile(path, wantedSize);
}

} // namespace kw::qt
