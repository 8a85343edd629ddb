// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
#include <KWToolkitQt/ViewAccessibility.h>

#include <KWToolkit/platform/Guarded.h>
#include <KWToolkit/platform/ui/NSTextField.h>
#include <KWToolkit/platform/ui/NSTextView.h>
#include <KWToolkit/platform/ui/NSWindow.h>
#include <KWToolkitQt/ViewPeers.h>
#include <KWToolkitQt/ViewWidget.h>

#include <QAccessibleWidget>

#include <algorithm>
#include <bit>
#include <ranges>
#include <utility>

namespace kw::qt {

namespace {

using Interfaces = std::vector<QAccessibleInterface*>;

/// By the widget.
std::unordered_map<const QObject*, ViewAccessibility*>& instances() {
    static auto& map = *new std::unordered_map<const QObject*, ViewAccessibility*>;
    return map;
}

constexpr struct {
    NSAccessibilityRole role;
    QAccessible::Role told;
    bool hasText;
    bool isPressable;
} roles[] {
    {NSAccessibilityRole::unknown, QAccessible::NoRole, false, false},
    {NSAccessibilityRole::group, QAccessible::Grouping, false, false},
    {NSAccessibilityRole::staticText, QAccessible::StaticText, true, false},
    {NSAccessibilityRole::textField, QAccessible::EditableText, true, false},
    {NSAccessibilityRole::button, QAccessible::PushButton, false, true},
    {NSAccessibilityRole::hotkeyField, QAccessible::HotkeyField, true, true},
};

/// What the view answers; nothing where it throws.
template <class Call>
auto ask(Call call) {
    decltype(call()) answer {};
    callGuarded([&] { answer = call(); });
    return answer;
}

NSAccessibilityRole roleOf(const NSView& view) {
    return ask([&] { return view.accessibilityRole(); });
}
bool hasRole(const NSView& view) { return roleOf(view) != NSAccessibilityRole::unknown; }

const auto& rowOf(const NSView& view) {
    return *std::ranges::find(roles, roleOf(view), [](const auto& row) { return row.role; });
}

bool isHidden(const NSView& view) {
    return view.isHidden() || (view.superview() && isHidden(*view.superview()));
}

int indexIn(const Interfaces& list, const QAccessibleInterface* child) {
    const auto found = std::ranges::find(list, child);
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

QAccessibleInterface* at(const Interfaces& list, int index) {
    return index >= 0 && static_cast<std::size_t>(index) < list.size() ? list[index] : nullptr;
}

} // namespace

/// The interface of one view. It lives no longer than the view is in its tree.
class ViewInterface final : public QAccessibleInterface,
                            public QAccessibleActionInterface,
                            public QAccessibleTextInterface,
                            public QAccessibleEditableTextInterface {
public:
    ViewInterface(const ViewAccessibility& owner, NSView& view)
        : m_owner(owner)
        , m_view(view)
        , m_told(now()) { }

    void tellChanges();

    bool isValid() const override { return true; }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override {
        return QAccessible::queryAccessibleInterface(&m_owner.widget())->window();
    }
    QAccessibleInterface* parent() const override { return m_owner.parent(m_view); }
    QAccessibleInterface* child(int index) const override { return at(children(), index); }
    int childCount() const override { return static_cast<int>(children().size()); }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return indexIn(children(), child);
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        return m_owner.childAt(&m_view, {x, y});
    }
    QAccessible::Role role() const override { return rowOf(m_view).told; }
    QAccessible::State state() const override { return m_owner.state(m_view); }
    QRect rect() const override { return m_owner.screenRect(m_view); }
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text kind, const QString& text) override {
        if (kind == QAccessible::Value)
            setValue(text);
    }
    void* interface_cast(QAccessible::InterfaceType type) override;

    // Actions
    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    // Text: what is shown as a whole, without cursor or selection.
    void selection(int, int* start, int* end) const override { *start = *end = 0; }
    int selectionCount() const override { return 0; }
    void addSelection(int, int) override { }
    void removeSelection(int) override { }
    void setSelection(int, int, int) override { }
    int cursorPosition() const override { return 0; }
    void setCursorPosition(int) override { }
    QString text(int start, int end) const override {
        return value().mid(std::max(start, 0), std::max(end - std::max(start, 0), 0));
    }
    int characterCount() const override { return static_cast<int>(value().size()); }
    QRect characterRect(int) const override { return rect(); } // it is somewhere there
    int offsetAtPoint(const QPoint&) const override { return -1; }
    void scrollToSubstring(int, int) override { }
    QString attributes(int, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }

    void deleteText(int start, int end) override { replaceText(start, end, {}); }
    void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }
    void replaceText(int start, int end, const QString& text) override;

private:
    struct Told {
        QString name, value;
        QAccessible::State state;
    };
    Told now() const { return {text(QAccessible::Name), value(), state()}; }
    Interfaces children() const { return m_owner.children(&m_view); }
    QString value() const {
        return QString::fromStdString(ask([&] { return m_view.accessibilityValue(); }));
    }
    void setValue(const QString& value) {
        callGuarded([&] { m_view.setAccessibilityValue(value.toStdString()); });
    }

    const ViewAccessibility& m_owner;
    NSView& m_view;
    Told m_told;
};

QString ViewInterface::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Value)
        return value();
    if (kind != QAccessible::Name)
        return {};
    const auto label = ask([&] { return m_view.accessibilityLabel(); });
    return label.empty() ? value() : QString::fromStdString(label);
}

void* ViewInterface::interface_cast(QAccessible::InterfaceType type) {
    const auto& row = rowOf(m_view);
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface*>(this);
    if (type == QAccessible::TextInterface && row.hasText)
        return static_cast<QAccessibleTextInterface*>(this);
    if (type == QAccessible::EditableTextInterface && row.role == NSAccessibilityRole::textField)
        return static_cast<QAccessibleEditableTextInterface*>(this);
    return nullptr;
}

QStringList ViewInterface::actionNames() const {
    const QAccessible::State state = this->state();
    QStringList names;
    if (rowOf(m_view).isPressable && !state.disabled)
        names += pressAction();
    if (state.focusable)
        names += setFocusAction();
    return names;
}

void ViewInterface::doAction(const QString& name) {
    // In the action the view may leave its tree, and with it this goes.
    NSView& view = m_view;
    const auto alive = view.weak_from_this().lock();
    if (!actionNames().contains(name))
        return;
    if (name == pressAction())
        callGuarded([&] { view.accessibilityPerformPress(); });
    else if (NSWindow* const window = view.window())
        callGuarded([&] { window->makeFirstResponder(&view); });
}

void ViewInterface::replaceText(int start, int end, const QString& text) {
    QString result = value();
    const auto size = static_cast<int>(result.size());
    const int from = std::clamp(start, 0, size);
    result.replace(from, std::clamp(end, from, size) - from, text);
    setValue(result);
}

void ViewInterface::tellChanges() {
    const Told before = std::exchange(m_told, now());
    if (before.name != m_told.name) {
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
    if (before.value != m_told.value) {
        QAccessibleValueChangeEvent event(this, m_told.value);
        QAccessible::updateAccessibility(&event);
    }
    if (before.value != m_told.value && textInterface()) {
        QAccessibleTextUpdateEvent event(this, 0, before.value, m_told.value);
        QAccessible::updateAccessibility(&event);
    }
    auto changed = std::bit_cast<QAccessible::State>(
        std::bit_cast<quint64>(before.state) ^ std::bit_cast<quint64>(m_told.state));
    changed.focused = false; // has an event of its own
    if (!(changed == QAccessible::State {})) {
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    }
}

namespace {

class ViewWidgetInterface final : public QAccessibleWidget {
public:
    explicit ViewWidgetInterface(ViewWidget& widget)
        : QAccessibleWidget(&widget, QAccessible::Client) { }

    int childCount() const override { return static_cast<int>(children().size()); }
    QAccessibleInterface* child(int index) const override { return at(children(), index); }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return indexIn(children(), child);
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        const ViewAccessibility* const views = this->views();
        return views ? views->childAt(nullptr, {x, y}) : nullptr;
    }
    QAccessibleInterface* focusChild() const override {
        const ViewAccessibility* const views = this->views();
        QAccessibleInterface* const focused = views ? views->focused() : nullptr;
        return focused ? focused : QAccessibleWidget::focusChild();
    }
    QAccessible::State state() const override {
        QAccessible::State result = QAccessibleWidget::state();
        const ViewAccessibility* const views = this->views();
        if (views && views->focused())
            result.focused = false;
        return result;
    }

private:
    /// Null while the widget is being destroyed.
    ViewAccessibility* views() const {
        const auto found = instances().find(object());
        return found == instances().end() ? nullptr : found->second;
    }
    Interfaces children() const {
        const ViewAccessibility* const views = this->views();
        if (!views)
            return {};
        Interfaces list = views->children(nullptr);
        // Widgets that the host has put there.
        for (int i = 0; i < QAccessibleWidget::childCount(); ++i) {
            QAccessibleInterface* const child = QAccessibleWidget::child(i);
            if (indexIn(list, child) < 0)
                list.push_back(child);
        }
        return list;
    }
};

} // namespace

ViewAccessibility::ViewAccessibility(ViewWidget& widget, NSView& root, const ViewPeers& peers)
    : m_widget(widget)
    , m_root(root)
    , m_peers(peers) {
    instances()[&widget] = this;
    QAccessible::installFactory(&make); // again does nothing
}

ViewAccessibility::~ViewAccessibility() {
    viewWillGo(m_root);
    instances().erase(&m_widget);
}

QAccessibleInterface* ViewAccessibility::make(const QString&, QObject* object) {
    const auto found = instances().find(object);
    return found == instances().end() ? nullptr : new ViewWidgetInterface(found->second->m_widget);
}

QWidget* ViewAccessibility::peer(NSView& view) const {
    const auto* const field = dynamic_cast<const NSTextField*>(&view);
    const auto editor = field ? field->currentEditor() : nullptr;
    return m_peers.widgetOf(editor ? editor.get() : &view);
}

QAccessibleInterface* ViewAccessibility::interfaceOf(NSView& view) const {
    if (QWidget* const widget = peer(view))
        return QAccessible::queryAccessibleInterface(widget);
    if (!hasRole(view))
        return nullptr;
    auto& made = m_interfaces[&view];
    if (!made) {
        made = new ViewInterface(*this, view);
        QAccessible::registerAccessibleInterface(made);
    }
    return made;
}

void ViewAccessibility::Children::append(
    const ViewAccessibility& owner, NSView& tree, bool isWithinChild) {
    const bool isPeer = owner.isReplaced(tree);
    const bool isTold = isPeer || hasRole(tree);
    if (isPeer ? withPeers : isTold && !isWithinChild)
        list.push_back(owner.interfaceOf(tree));
    if (isPeer)
        return;
    for (const auto& view : tree.subviews())
        append(owner, *view, isWithinChild || isTold);
}

Interfaces ViewAccessibility::children(const NSView* view) const {
    Children children {.list = {}, .withPeers = !view};
    if (!view) {
        children.append(*this, m_root, false);
    } else {
        for (const auto& subview : view->subviews())
            children.append(*this, *subview, false);
    }
    return children.list;
}

QAccessibleInterface* ViewAccessibility::parent(const NSView& view) const {
    NSView* ancestor = view.superview();
    while (ancestor && !hasRole(*ancestor))
        ancestor = ancestor->superview();
    return ancestor ? interfaceOf(*ancestor) : QAccessible::queryAccessibleInterface(&m_widget);
}

QAccessibleInterface* ViewAccessibility::childAt(const NSView* view, QPoint place) const {
    const QPoint local = m_widget.mapFromGlobal(place);
    const NSPoint point {local.x() + 0.5, m_widget.height() - local.y() - 0.5};
    NSView* hit = ask([&] { return m_root.hitTest(point); });
    while (hit && hit != view && !isReplaced(*hit) && !hasRole(*hit))
        hit = hit->superview();
    const bool isChild = hit && (!view || (hit != view && hit->isDescendantOf(*view)));
    return isChild ? interfaceOf(*hit) : nullptr;
}

QAccessibleInterface* ViewAccessibility::focused() const {
    const ViewHost* const host = m_root.host();
    NSView* const view = host && m_widget.hasFocus() ? host->firstResponder() : nullptr;
    return view ? interfaceOf(*view) : nullptr;
}

QRect ViewAccessibility::screenRect(const NSView& view) const {
    NSRect rect = view.bounds();
    for (const NSView* each = &view; each; each = each->superview())
        rect = each->convertRectToSuperview(rect);
    const QRectF local(
        NSMinX(rect), m_widget.height() - NSMaxY(rect), rect.size.width, rect.size.height);
    const QRect whole = local.toAlignedRect();
    return {m_widget.mapToGlobal(whole.topLeft()), whole.size()};
}

QAccessible::State ViewAccessibility::state(NSView& view) const {
    const NSAccessibilityRole role = roleOf(view);
    const QRect onScreen = screenRect(view);
    const QRect local(m_widget.mapFromGlobal(onScreen.topLeft()), onScreen.size());
    const ViewHost* const host = m_root.host();

    QAccessible::State state;
    state.disabled = !m_widget.isEnabled() || !ask([&] { return view.isAccessibilityEnabled(); });
    state.invisible = !m_widget.isVisible() || isHidden(view) || isReplaced(view);
    state.offscreen = !state.invisible
        && (NSIsEmptyRect(view.visibleRect()) || !m_widget.visibleRegion().intersects(local));
    state.focusable = !state.disabled && ask([&] { return view.acceptsFirstResponder(); });
    state.focused = host && m_widget.hasFocus() && host->firstResponder() == &view;
    state.editable = role == NSAccessibilityRole::textField;
    state.readOnly = role == NSAccessibilityRole::staticText;
    state.pressed = ask([&] { return view.isAccessibilityPressed(); });
    return state;
}

void ViewAccessibility::viewWillGo(const NSView& view) {
    if (m_interfaces.empty())
        return;
    if (const auto found = m_interfaces.find(&view); found != m_interfaces.end()) {
        ViewInterface* const made = m_interfaces.extract(found).mapped();
        QAccessibleEvent event(made, QAccessible::ObjectDestroyed);
        QAccessible::updateAccessibility(&event);
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(made));
    }
    for (const auto& subview : view.subviews())
        viewWillGo(*subview);
}

void ViewAccessibility::update() {
    if (m_isUpdatePosted || !QAccessible::isActive())
        return;
    m_isUpdatePosted = true;
    QMetaObject::invokeMethod(
        &m_widget,
        [this] {
            m_isUpdatePosted = false;
            tellOf(m_root);
            tellFocus();
        },
        Qt::QueuedConnection);
}

void ViewAccessibility::tellOf(NSView& tree) {
    const auto told = m_interfaces.find(&tree);
    if (told != m_interfaces.end()) {
        told->second->tellChanges();
    } else if (!isReplaced(tree) && hasRole(tree)) {
        QAccessibleEvent event(interfaceOf(tree), QAccessible::ObjectCreated);
        QAccessible::updateAccessibility(&event);
    }
    // A copy: whoever is told may change the tree.
    for (const auto& view : std::vector(tree.subviews()))
        tellOf(*view);
}

void ViewAccessibility::tellFocus() {
    QAccessibleInterface* const now = focused();
    const QAccessible::Id id = now ? QAccessible::uniqueId(now) : 0;
    if (std::exchange(m_toldFocus, id) == id)
        return;
    // Qt has told of the widget before; here the keyboard left a view for one without a role.
    if (now || m_widget.hasFocus()) {
        QAccessibleEvent event(
            now ? now : QAccessible::queryAccessibleInterface(&m_widget), QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace kw::qt
