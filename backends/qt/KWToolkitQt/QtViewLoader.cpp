// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/QtViewLoader.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkit/platform/Platform.h>
#include <KWToolkit/platform/foundation/NSKeyValueCoding.h>
#include <KWToolkit/platform/ui/NSNib.h>
#include <KWToolkit/platform/ui/NSTextField.h>
#include <KWToolkitQt/CacheKey.h>
#include <KWToolkitQt/QtFonts.h>
#include <KWToolkitQt/ViewWidget.h>
#include <KWToolkitQt/WidgetView.h>

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QLayout>
#include <QUiLoader>
#include <QXmlStreamReader>

#include <any>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

namespace kw::qt {

namespace {

constexpr double pointsPerInch = 72;
constexpr qint64 largestFile = qint64 {1} << 24; // of a layout, in bytes
constexpr int deepestElement = 256;

std::optional<QByteArray> contentOf(const std::string& path, std::string& reason) {
    const auto fail = [&](const std::string& why) {
        reason = path + ": " + why;
        return std::nullopt;
    };
    // Asked first: opening a pipe would wait.
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::is_regular_file(status))
        return fail(error ? error.message() : "is no file");
    const auto close = [](std::FILE* stream) { std::fclose(stream); };
    const std::unique_ptr<std::FILE, decltype(close)> stream(std::fopen(path.c_str(), "rbe"));
    if (!stream)
        return fail(std::generic_category().message(errno));
    QFile file; // by a stream, as the path may hold any bytes
    if (!file.open(stream.get(), QIODevice::ReadOnly))
        return fail(file.errorString().toStdString());
    QByteArray content = file.read(largestFile + 1);
    if (file.error() != QFileDevice::NoError)
        return fail(file.errorString().toStdString());
    if (content.size() > largestFile)
        return fail("is too large for a layout");
    return content;
}

/// Qt reads what lies in each other by functions that call each other.
bool isNestedTooDeeply(const QByteArray& content) {
    QXmlStreamReader reader(content);
    for (int depth = 0; !reader.atEnd();) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::StartElement && ++depth > deepestElement)
            return true;
        if (token == QXmlStreamReader::EndElement)
            --depth;
    }
    return false;
}

/// What the widgets of the file are made by.
class Loader : public QUiLoader {
public:
    Loader() { clearPluginPaths(); }

    /// A view comes in a widget of its own, to be taken out where it lies in another view.
    QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override {
        std::shared_ptr<NSView> view;
        callGuarded([&] { view = makeViewOfClass(className.toStdString()); });
        if (!view)
            return QUiLoader::createWidget(className, parent, name);
        view->setIdentifier(name.toStdString());
        auto* const widget = new ViewWidget(std::move(view), parent);
        widget->setObjectName(name);
        return widget;
    }
};

std::any toValue(const QFont& font, const QWidget& widget) {
    const bool hasFamily = font.resolveMask() & (QFont::FamilyResolved | QFont::FamiliesResolved);
    return NSFont {hasFamily ? font.family().toStdString() : std::string(),
        font.pixelSize() > 0 ? font.pixelSize()
                             : font.pointSizeF() * widget.logicalDpiY() / pointsPerInch,
        font.bold()};
}

/// Empty for what no view takes.
std::any toValue(const QVariant& variant, const QWidget& widget) {
    const auto toPoint = [](QPointF point) { return NSPoint {point.x(), point.y()}; };
    const auto toSize = [](QSizeF size) { return NSSize {size.width(), size.height()}; };
    switch (variant.typeId()) {
    case QMetaType::Bool:
        return variant.toBool();
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
        return boxed(variant.toLongLong());
    case QMetaType::ULongLong:
        return boxed(variant.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return variant.toDouble();
    case QMetaType::QString:
    case QMetaType::QByteArray:
        return variant.toString().toStdString();
    case QMetaType::QColor:
        return toNSColor(variant.value<QColor>());
    case QMetaType::QFont:
        return toValue(variant.value<QFont>(), widget);
    case QMetaType::QPoint:
    case QMetaType::QPointF:
        return toPoint(variant.toPointF());
    case QMetaType::QSize:
    case QMetaType::QSizeF:
        return toSize(variant.toSizeF());
    case QMetaType::QRect:
    case QMetaType::QRectF:
        return NSRect {toPoint(variant.toRectF().topLeft()), toSize(variant.toRectF().size())};
    default:
        return {};
    }
}

/// Makes views of the widgets of one file.
class Conversion {
public:
    explicit Conversion(const std::string& path)
        : m_path(path) { }

    std::shared_ptr<NSView> convert(std::unique_ptr<QWidget> widget) {
        if (auto* const shown = dynamic_cast<ViewWidget*>(widget.get())) {
            finish(*shown);
            return shown->rootView(); // and the widget goes
        }
        finishViewsIn(*widget);
        const bool isHidden = widget->testAttribute(Qt::WA_WState_ExplicitShowHide);
        auto view = std::make_shared<WidgetView>(std::move(widget));
        view->setIdentifier(view->widget()->objectName().toStdString());
        view->setHidden(isHidden && view->widget()->isHidden());
        return view;
    }

private:
    void finishViewsIn(QWidget& widget) {
        for (QObject* const child : QObjectList(widget.children())) {
            if (auto* const shown = dynamic_cast<ViewWidget*>(child))
                finish(*shown);
            else if (auto* const other = qobject_cast<QWidget*>(child))
                finishViewsIn(*other);
        }
    }

    /// Gives a view what the file says about its widget.
    void finish(ViewWidget& widget) {
        NSView& view = *widget.rootView();
        view.setFrame(NSMakeRect(0, 0, widget.width(), widget.height()));
        if (widget.layout())
            widget.layout()->activate();
        for (QObject* const child : QObjectList(widget.children())) {
            auto* const inside = qobject_cast<QWidget*>(child);
            if (!inside)
                continue;
            const QRect place = inside->geometry();
            std::unique_ptr<QWidget> owned(inside);
            owned->setParent(nullptr);
            const auto subview = convert(std::move(owned));
            const double y =
                view.isFlipped() ? place.y() : widget.height() - place.y() - place.height();
            subview->setFrame(NSMakeRect(place.x(), y, place.width(), place.height()));
            view.addSubview(subview);
        }
        writeProperties(widget, view);
        callGuarded([&] {
            if (auto* const field = dynamic_cast<NSTextField*>(&view))
                field->cell()->awakeFromNib();
            view.awakeFromNib();
        });
    }

    void writeProperties(const ViewWidget& widget, NSView& view) const {
        if (!widget.accessibleName().isEmpty())
            view.setAccessibilityLabel(widget.accessibleName().toStdString());
        // Of these the widget itself has one by the name.
        if (widget.testAttribute(Qt::WA_WState_ExplicitShowHide))
            view.setHidden(widget.isHidden());
        if (widget.testAttribute(Qt::WA_ForceDisabled))
            write(view, "enabled", false);
        if (widget.testAttribute(Qt::WA_SetFont))
            write(view, "font", toValue(widget.font(), widget));
        for (const QByteArray& name : widget.dynamicPropertyNames()) {
            if (!name.startsWith("_q_"))
                write(view, name.toStdString(), toValue(widget.property(name), widget));
        }
    }

    void write(NSView& view, const std::string& key, const std::any& value) const {
        std::string why = "no view takes a value of its kind";
        try {
            if (value.has_value()) {
                setValueForKey(view, value, key);
                return;
            }
        } catch (const std::exception& error) {
            why = error.what();
        }
        Platform::console().writeLine(
            m_path + ": " + key + " of \"" + view.identifier() + "\": " + why);
    }

    const std::string& m_path;
};

} // namespace

std::shared_ptr<NSView> QtViewLoader::loadView(
    const std::string& name, const std::string& folder, std::string& reason) {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        reason = "there is no QApplication yet";
        return nullptr;
    }
    const std::string path = folder + '/' + name + ".ui";
    if (name.empty() || name.find('/') != name.npos || path.find('\0') != path.npos) {
        reason = "\"" + name + "\" is no name of a layout file";
        return nullptr;
    }
    auto content = contentOf(path, reason);
    if (!content)
        return nullptr;
    if (isNestedTooDeeply(*content)) {
        reason = path + ": is nested too deeply";
        return nullptr;
    }
    QBuffer file(&*content);
    file.open(QIODevice::ReadOnly);
    // One: making it loads Designer's plugins, however soon it is told not to.
    auto& loader = ofApplication<Loader>();
    std::unique_ptr<QWidget> root(loader.load(&file));
    if (!root) {
        reason = path + ": " + loader.errorString().toStdString();
        return nullptr;
    }
    return Conversion(path).convert(std::move(root));
}

} // namespace kw::qt
