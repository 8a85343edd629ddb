// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/SafeSvg.h>

#include <QBuffer>
#include <QImageReader>
#include <QMultiHash>
#include <QString>
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
constexpr int maximumElements = 200'000; // drawn
constexpr int maximumDepth = 100; // of elements within elements and what they refer to

/// What it takes to draw an element.
struct Effort {
    int elements = 1;
    int depth = 1;

    void add(const Effort& part) {
        elements = std::min(elements + part.elements, maximumElements + 1);
        depth = std::max(depth, part.depth + 1);
    }
    bool isTooMuch() const { return elements > maximumElements || depth > maximumDepth; }
};

/// Elements and what they refer to: a few that use others can stand for billions.
class ElementTree {
public:
    void begin(const QXmlStreamAttributes& attributes) {
        const std::size_t index = m_elements.size();
        Element& element = m_elements.emplace_back();
        if (!m_open.empty())
            m_elements[m_open.back()].children.push_back(index);
        m_open.push_back(index);
        for (const QXmlStreamAttribute& attribute : attributes) {
            if (attribute.name() == u"id")
                m_byId.insert(attribute.value().toString(), index);
            // In "#name" as well as in "url(#name)"; that a color may look like it does no harm.
            for (QStringView rest = attribute.value(); rest.contains(u'#');) {
                rest = rest.sliced(rest.indexOf(u'#') + 1);
                const auto* const end = std::ranges::find_if(
                    rest, [](QChar c) { return c.isSpace() || u")\"';"_qs.contains(c); });
                element.references += rest.first(std::distance(rest.begin(), end)).toString();
            }
        }
    }
    void end() { m_open.pop_back(); }

    bool isTooMuch() const {
        return m_open.size() > maximumDepth || m_elements.size() > maximumElements;
    }
    /// Of the first element, with all that is in it.
    Effort effort() { return m_elements.empty() ? Effort {} : effortOf(0, 1); }

private:
    struct Element {
        std::vector<std::size_t> children;
        QStringList references;
        std::optional<Effort> effort;
    };

    Effort effortOf(std::size_t index, int depth) {
        // That also ends what uses itself.
        if (depth > maximumDepth)
            return {maximumElements + 1, maximumDepth + 1};
        Element& element = m_elements[index];
        if (!element.effort) {
            Effort effort;
            const auto add = [&](std::size_t part) {
                if (!effort.isTooMuch())
                    effort.add(effortOf(part, depth + 1));
            };
            std::ranges::for_each(element.children, add);
            for (const QString& reference : element.references) {
                const auto [first, last] = m_byId.equal_range(reference);
                std::for_each(first, last, add);
            }
            element.effort = effort;
        }
        return *element.effort;
    }

    std::vector<Element> m_elements;
    std::vector<std::size_t> m_open;
    QMultiHash<QString, std::size_t> m_byId;
};

/// Copies a document, element by element.
class SvgCopy {
public:
    explicit SvgCopy(const QByteArray& svg)
        : m_in(svg)
        , m_out(&m_copy) {
        m_in.setNamespaceProcessing(false); // names are written as they are
    }

    QByteArray copy() {
        while (!m_in.atEnd() && !m_tree.isTooMuch())
            copyToken(m_in.readNext());
        return m_in.hasError() || m_tree.isTooMuch() || m_tree.effort().isTooMuch() ? QByteArray {}
                                                                                    : m_copy;
    }

private:
    void copyToken(QXmlStreamReader::TokenType token) {
        if (token == QXmlStreamReader::StartElement) {
            copyStart();
        } else if (token == QXmlStreamReader::EndElement) {
            m_out.writeEndElement();
            m_tree.end();
        } else if (token == QXmlStreamReader::Characters) {
            m_out.writeCharacters(m_in.text().toString());
        }
    }

    void copyStart() {
        const QString name = m_in.name().toString();
        QXmlStreamAttributes attributes = m_in.attributes();
        if (name.section(u':', -1) == u"image" && !keepPixels(attributes)) {
            m_in.skipCurrentElement();
            return;
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
        constexpr qint64 bytesPerPixel = 4;
        QBuffer buffer(&data);
        QImageReader reader(&buffer);
        reader.setDecideFormatFromContent(true);
        const QSize size = reader.size();
        if (!QByteArrayList {"png", "jpeg", "gif", "webp"}.contains(reader.format())
            || size.isEmpty())
            return false;
        // Qt limits each picture, and keeps all.
        m_pictureBytes += bytesPerPixel * size.width() * size.height();
        return m_pictureBytes <= qint64 {QImageReader::allocationLimit()} << 20;
    }

    QByteArray m_copy;
    QXmlStreamReader m_in;
    QXmlStreamWriter m_out;
    ElementTree m_tree;
    qint64 m_pictureBytes = 0;
};

} // namespace

QByteArray safeSvg(QIODevice& svg) {
    const QByteArray text = svg.read(maximumBytes + 1);
    return text.size() > maximumBytes ? QByteArray {} : SvgCopy(text).copy();
}

} // namespace kw::qt
