// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/SafeSvg.h>

#include <QBuffer>
#include <QHash>
#include <QImageReader>
#include <QMultiHash>
#include <QString>
#include <QStringDecoder>
#include <QStringList>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <vector>

namespace kw::qt {

namespace {

constexpr qint64 maximumBytes = qint64 {16} << 20;
constexpr qint64 maximumWork = qint64 {1} << 30;
constexpr std::size_t maximumElements = 200'000; // and references to them
constexpr int maximumDepth = 100; // of elements within elements and what they refer to
// What takes Qt a time that grows with the square.
constexpr int maximumAttributes = 1000; // of an element
constexpr qint64 maximumMatches = 200'000'000; // of rules of style with elements

/// What it takes to draw an element.
struct Effort {
    qint64 work = 0;
    int depth = 1;

    void add(const Effort& part) {
        work = std::min(work + part.work, maximumWork);
        depth = std::max(depth, part.depth + 1);
    }
    bool isTooMuch() const { return work >= maximumWork || depth > maximumDepth; }
};

/// Of one element. Edges cross those of their own element only: many short elements are drawn
/// faster than a long one.
qint64 workFor(qint64 bytes) {
    constexpr qint64 least = 16;
    constexpr qint64 longElement = 8192;
    return least + bytes * std::min(bytes, longElement) / longElement;
}

/// Elements and what they refer to: a few that use others can stand for billions.
class ElementTree {
public:
    void begin(const QXmlStreamAttributes& attributes) {
        const std::size_t index = m_elements.size();
        Element& element = m_elements.emplace_back();
        if (!m_open.empty())
            m_elements[m_open.back()].children.push_back(index);
        m_open.push_back(index);
        ++m_targets;
        for (const QXmlStreamAttribute& attribute : attributes) {
            constexpr qint64 bytesPerMatch = 16; // of the names of classes
            element.bytes += attribute.value().size();
            m_targets += attribute.value().size() / bytesPerMatch;
            if (attribute.name() == u"id")
                m_byId.insert(attribute.value().toString(), index);
            // In "#name" as well as in "url(#name)"; that a color may look like it does no harm.
            for (QStringView rest = attribute.value(); rest.contains(u'#') && !isTooMuch();) {
                rest = rest.sliced(rest.indexOf(u'#') + 1);
                const auto* const end = std::ranges::find_if(
                    rest, [](QChar c) { return c.isSpace() || u"#)\"';"_qs.contains(c); });
                element.references += rest.first(std::distance(rest.begin(), end)).toString();
                ++m_references;
            }
        }
    }
    void add(QStringView text) {
        const qint64 rules = text.count(u'{');
        if (rules > 0)
            m_rules += rules + text.count(u',');
        if (rules == 0 && !m_open.empty())
            m_elements[m_open.back()].bytes += text.size();
    }
    void end() { m_open.pop_back(); }

    bool isTooMuch() const {
        const std::size_t count = m_elements.size();
        return m_open.size() > maximumDepth || count > maximumElements
            || m_references > maximumElements || m_rules * m_targets > maximumMatches;
    }
    /// Of the first element, with all that is in it.
    Effort effort() { return m_elements.empty() ? Effort {} : effortOf(0, 1); }

private:
    struct Element {
        qint64 bytes = 0;
        std::vector<std::size_t> children;
        QStringList references;
        std::optional<Effort> effort;
    };

    Effort effortOf(std::size_t index, int depth) {
        // That also ends what uses itself.
        if (depth > maximumDepth)
            return {maximumWork, depth};
        Element& element = m_elements[index];
        if (!element.effort) {
            Effort effort {.work = workFor(element.bytes)};
            const auto add = [&](std::size_t part) {
                if (!effort.isTooMuch())
                    effort.add(effortOf(part, depth + 1));
            };
            std::ranges::for_each(element.children, add);
            for (const QString& reference : element.references) {
                if (!effort.isTooMuch())
                    effort.add(effortOfAll(reference, depth));
            }
            element.effort = effort;
        }
        return *element.effort;
    }

    /// Of all elements of a name: it may be given, and referred to, many times.
    Effort effortOfAll(const QString& name, int depth) {
        if (const auto found = m_effortsById.constFind(name); found != m_effortsById.constEnd())
            return *found;
        Effort effort {.depth = 0};
        const auto [first, last] = m_byId.equal_range(name);
        for (auto index = first; index != last && !effort.isTooMuch(); ++index)
            effort.add(effortOf(*index, depth + 1));
        m_effortsById.insert(name, effort);
        return effort;
    }

    std::vector<Element> m_elements;
    std::vector<std::size_t> m_open;
    std::size_t m_references = 0;
    qint64 m_rules = 0;
    qint64 m_targets = 0; // of rules: elements, and more for long attributes
    QMultiHash<QString, std::size_t> m_byId;
    QHash<QString, Effort> m_effortsById;
};

bool hasManyAttributes(QStringView text) {
    int count = 0;
    return std::ranges::any_of(text, [&](QChar c) {
        count = c == u'<' ? 0 : count + (c == u'=' ? 1 : 0);
        return count > maximumAttributes;
    });
}

constexpr QStringView dashes = u"stroke-dasharray";

/// Names in styles may be written with backslashes.
QString withoutDashes(QString style) {
    return style.remove(u'\\').replace(
        dashes.toString(), QStringLiteral("none"), Qt::CaseInsensitive);
}

/// Copies a document, element by element.
class SvgCopy {
public:
    explicit SvgCopy(const QString& svg)
        : m_in(svg)
        , m_out(&m_copy) {
        m_in.setNamespaceProcessing(false); // names are written as they are
    }

    SafeSvg copy() {
        while (!m_in.atEnd() && !m_tree.isTooMuch())
            copyToken(m_in.readNext());
        if (m_in.hasError() || m_tree.isTooMuch())
            return {};
        const Effort effort = m_tree.effort();
        return effort.isTooMuch() ? SafeSvg {} : SafeSvg {m_copy, effort.work};
    }

private:
    void copyToken(QXmlStreamReader::TokenType token) {
        if (token == QXmlStreamReader::StartElement) {
            copyStart();
        } else if (token == QXmlStreamReader::EndElement) {
            m_out.writeEndElement();
            m_tree.end();
        } else if (token == QXmlStreamReader::Characters) {
            m_out.writeCharacters(withoutDashes(m_in.text().toString()));
            m_tree.add(m_in.text());
        }
    }

    void copyStart() {
        const QString name = m_in.name().toString();
        QXmlStreamAttributes attributes = m_in.attributes();
        if (name.section(u':', -1) == u"image" && !keepPixels(attributes)) {
            m_in.skipCurrentElement();
            return;
        }
        attributes.removeIf([](const QXmlStreamAttribute& attribute) {
            return attribute.qualifiedName().compare(dashes, Qt::CaseInsensitive) == 0;
        });
        for (QXmlStreamAttribute& attribute : attributes) {
            if (attribute.name() == u"style")
                attribute = QXmlStreamAttribute(attribute.qualifiedName().toString(),
                    withoutDashes(attribute.value().toString()));
        }
        m_tree.begin(attributes);
        m_out.writeStartElement(name);
        m_out.writeAttributes(attributes);
    }

    /// Whether a picture's address holds the pixels itself. It is written anew: Qt takes what it
    /// cannot decode for the name of a file.
    bool keepPixels(QXmlStreamAttributes& attributes) {
        for (QXmlStreamAttribute& attribute : attributes) {
            const QString name = attribute.qualifiedName().toString();
            if (name.section(u':', -1) != u"href")
                continue;
            const QString prefix = "base64,";
            const QString address = attribute.value().toString().trimmed();
            const qsizetype begin = address.lastIndexOf(prefix);
            if (!address.startsWith(u"data:") || begin < 0)
                return false;
            const QByteArray data =
                QByteArray::fromBase64(address.sliced(begin + prefix.size()).toLatin1());
            if (!isPicture(data))
                return false;
            attribute = QXmlStreamAttribute(name, "data:;" + prefix + data.toBase64());
        }
        return true;
    }

    bool isPicture(QByteArray data) {
        QBuffer buffer(&data);
        QImageReader reader(&buffer);
        reader.setDecideFormatFromContent(true);
        // First: the size of another vector picture is not asked for.
        if (!QByteArrayList {"png", "jpeg", "gif", "webp"}.contains(reader.format()))
            return false;
        const QSize size = reader.size();
        // Qt limits each picture, and keeps all.
        m_picturePixels += qint64 {size.width()} * size.height();
        return isWithinLimit(m_picturePixels);
    }

    QByteArray m_copy;
    QXmlStreamReader m_in;
    QXmlStreamWriter m_out;
    ElementTree m_tree;
    qint64 m_picturePixels = 0;
};

} // namespace

bool isWithinLimit(qint64 pixels) {
    constexpr qint64 bytesPerPixel = 4;
    const qint64 limit = qint64 {QImageReader::allocationLimit()} << 20;
    return limit == 0 || bytesPerPixel * pixels <= limit;
}

SafeSvg safeSvg(QIODevice& svg) {
    const QByteArray bytes = svg.read(maximumBytes + 1);
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder(bytes);
    if (decoder.hasError())
        text = QString::fromLatin1(bytes);
    return bytes.size() > maximumBytes || hasManyAttributes(text) ? SafeSvg {}
                                                                  : SvgCopy(text).copy();
}

} // namespace kw::qt
