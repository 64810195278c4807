#include "Varnic/Views/Theme/Native/AccessibleControl.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleObject>
#include <QQuickItem>
#include <QQuickWindow>

#include <utility>

namespace varnic {

namespace {

bool isNamed(const QObject& attached) {
    return !attached.property("name").toString().isEmpty();
}

/// The attached object `Accessible` of an item, by which its view says what it is; null without one. Qt gives some
/// items a second one, in which nothing is said.
QObject* told(const QObject* item) {
    QObject* found = nullptr;
    for (QObject* const child : item->children()) {
        if (child->inherits("QQuickAccessibleAttached") &&
            (found == nullptr || (isNamed(*child) && !isNamed(*found)))) {
            found = child;
        }
    }
    return found;
}

/// A button, a box or an entry of a menu. What stands in it is its name.
class AccessibleControl : public QAccessibleObject, public QAccessibleActionInterface {
public:
    explicit AccessibleControl(QQuickItem* item) : QAccessibleObject(item) {
        QObject::connect(item, &QQuickItem::enabledChanged, item, [item] {
            QAccessible::State changed;
            changed.disabled = true;
            QAccessibleStateChangeEvent event(item, changed);
            QAccessible::updateAccessibility(&event);
        });
    }

    [[nodiscard]] QWindow* window() const override { return item().window(); }

    [[nodiscard]] QAccessibleInterface* parent() const override {
        for (QQuickItem* around = item().parentItem(); around != nullptr; around = around->parentItem()) {
            if (QAccessibleInterface* const found = QAccessible::queryAccessibleInterface(around)) {
                return found;
            }
        }
        return QAccessible::queryAccessibleInterface(window());
    }

    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }

    [[nodiscard]] int childCount() const override { return 0; }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }

    [[nodiscard]] QRect rect() const override {
        if (item().window() == nullptr) {
            return {};
        }
        return {item().mapToGlobal(QPointF(0, 0)).toPoint(), item().size().toSize()};
    }

    [[nodiscard]] QAccessible::Role role() const override {
        for (const auto& [name, role] : {std::pair("QQuickCheckBox", QAccessible::CheckBox),
                                         std::pair("QQuickRadioButton", QAccessible::RadioButton),
                                         std::pair("QQuickTabButton", QAccessible::PageTab),
                                         std::pair("QQuickItemDelegate", QAccessible::ListItem),
                                         std::pair("QQuickMenuItem", QAccessible::MenuItem)}) {
            if (item().inherits(name)) {
                return role;
            }
        }
        return isCheckable() ? QAccessible::CheckBox : QAccessible::Button;
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        switch (kind) {
        case QAccessible::Name: {
            const QString name = said("name").toString();
            return name.isEmpty() ? item().property("text").toString() : name;
        }
        case QAccessible::Description:
            return said("description").toString();
        default:
            return {};
        }
    }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.disabled = !item().isEnabled();
        state.focusable = item().activeFocusOnTab() || said("focusable").toBool();
        state.focused = item().hasActiveFocus() || said("focused").toBool(); // a list can say so of its row
        state.checkable = isCheckable();
        state.checked = isChecked();
        state.selectable = said("selectable").toBool();
        state.selected = said("selected").toBool();
        state.pressed = item().property("down").toBool();
        state.invisible = window() == nullptr || !window()->isVisible() || !item().isVisible() || rect().isEmpty() ||
                          qFuzzyIsNull(item().opacity());
        state.offscreen = window() != nullptr && !window()->geometry().intersects(rect());
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }

    [[nodiscard]] QStringList actionNames() const override {
        if (!item().isEnabled()) {
            return {};
        }
        QStringList names{pressAction()};
        if (isCheckable() && role() != QAccessible::PageTab) {
            names.prepend(toggleAction());
        }
        if (state().focusable) {
            names.append(setFocusAction());
        }
        return names;
    }

    void doAction(const QString& action) override {
        if (!item().isEnabled()) {
            return;
        }
        if (action == setFocusAction()) {
            item().forceActiveFocus(Qt::OtherFocusReason);
        } else if (isCheckedByItself()) {
            item().setProperty("checked", item().property("autoExclusive").toBool() || !isChecked());
        } else {
            QMetaObject::invokeMethod(told(object()), "pressAction");
        }
    }

    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*action*/) const override { return {}; }

private:
    [[nodiscard]] QQuickItem& item() const { return *static_cast<QQuickItem*>(object()); }

    [[nodiscard]] QVariant said(const char* property) const {
        const QObject* const attached = told(object());
        return attached == nullptr ? QVariant() : attached->property(property);
    }

    /// By itself, or as a button that shows what its owner knows. What a view says of this in `Accessible`, Qt's
    /// controls replace.
    [[nodiscard]] bool isCheckable() const { return item().property("checkable").toBool() || isSwitch(); }

    [[nodiscard]] bool isChecked() const { return item().property(isSwitch() ? "isOn" : "checked").toBool(); }

    /// What is done with it follows from that, rather than from a press.
    [[nodiscard]] bool isCheckedByItself() const {
        return item().property("checkable").toBool() && !item().inherits("QQuickButton") &&
               !item().inherits("QQuickMenuItem");
    }

    [[nodiscard]] bool isSwitch() const { return item().property("isSwitch").toBool(); }
};

QAccessibleInterface* makeControl(const QString& className, QObject* object) {
    if (className != "QQuickAbstractButton") {
        return nullptr;
    }
    const QObject* const attached = told(object);
    return attached == nullptr || attached->property("ignored").toBool()
               ? nullptr
               : new AccessibleControl(static_cast<QQuickItem*>(object)); // Qt's cache owns it
}

} // namespace

void prepareAccessibility() {
    QAccessible::installFactory(makeControl);
}

} // namespace varnic
