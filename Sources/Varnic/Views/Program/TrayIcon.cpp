#include "Varnic/Views/Program/TrayIcon.h"

#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Views/SettingsViews/RecentCalls.h"
#include "Varnic/Views/Theme/Native/NibMark.h"
#include "VarnicCore/Pipeline/SessionState.h"

#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QString>

#include <utility>

namespace varnic {

namespace {

/// The dot stands in a square of this many points.
constexpr int dotSquare = 14;
constexpr int dotInset = 2;
/// Your ink as it is in the dark, which can be read on light panels too.
constexpr QRgb nibColour = 0xFF8EA7F2;

template <typename Paint>
QIcon painted(Paint paint) {
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        paint(painter, QRectF(0, 0, size, size));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

QIcon dotIcon() {
    return painted([](QPainter& painter, const QRectF& square) {
        const qreal inset = square.width() * dotInset / dotSquare;
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(menuBarDotColour));
        painter.drawEllipse(square.adjusted(inset, inset, -inset, -inset));
    });
}

QIcon idleIcon() {
    const QIcon drawn = painted([](QPainter& painter, const QRectF& square) {
        const qreal inset = square.width() / 10;
        paintNib(painter, square.adjusted(inset, inset, -inset, -inset), QColor(nibColour), Qt::white);
    });
    return QIcon::fromTheme("app.brevin.Varnic-symbolic", drawn);
}

} // namespace

TrayIcon::TrayIcon(AppModel& model, const std::vector<MenuEntry>& entries, QObject* parent)
    : QObject(parent), model_(model) {
    time_ = menu_.addAction(QString());
    time_->setEnabled(false);
    for (const MenuEntry& entry : entries) {
        if (entry.beginsGroup) {
            callsEnd_ = menu_.addSeparator();
        }
        entries_.emplace_back(entry, menu_.addAction(QString(), this, entry.perform));
    }
    icon_.setContextMenu(&menu_);
    connect(&icon_, &QSystemTrayIcon::activated, this, &TrayIcon::activated);
    connect(&menu_, &QMenu::aboutToShow, this, &TrayIcon::refreshCalls);
    connect(&model, &AppModel::notesChanged, this, &TrayIcon::refreshCalls);
    connect(&model.recorder(), &RecordingController::stateChanged, this, &TrayIcon::refresh);
    connect(&model.recorder(), &RecordingController::ticked, this, &TrayIcon::refresh);
    refresh();
    refreshCalls();
    icon_.show();
}

void TrayIcon::activated(QSystemTrayIcon::ActivationReason reason) {
    const QRect place = icon_.geometry();
    if (reason == QSystemTrayIcon::Trigger && !place.isEmpty()) {
        clicked(place);
    } else if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick) {
        model_.desktop.activate();
    }
}

bool TrayIcon::isReachable() const {
    return icon_.isVisible() && QSystemTrayIcon::isSystemTrayAvailable();
}

/// The recorder's state changes 20 times a second, what the icon shows of it once.
void TrayIcon::refresh() {
    const SessionState& state = model_.recorder().state();
    for (const auto& [entry, action] : entries_) {
        action->setText(QString::fromStdString(entry.text()));
        action->setEnabled(entry.isEnabled());
    }
    const MenuBarLabel label = MenuBarLabel::of(state, model_.recorder().elapsed());
    if (label == label_) {
        return;
    }
    const QString text = QString::fromStdString(label.text);
    if (icon_.icon().isNull() || label.showsDot != label_.showsDot) {
        icon_.setIcon(label.showsDot ? dotIcon() : idleIcon());
    }
    icon_.setToolTip(label.showsDot ? "Varnic is recording · " + text : QStringLiteral("Varnic"));
    time_->setText("Recording · " + text);
    time_->setVisible(label.showsDot);
    label_ = label;
}

void TrayIcon::refreshCalls() {
    std::vector<RecentCall> recent = RecentCall::of(model_);
    if (toldCalls_ == recent) {
        return; // with every key that is typed in a note
    }
    qDeleteAll(std::exchange(calls_, {}));
    if (!recent.empty()) {
        calls_ << new QAction(&menu_) << new QAction(QStringLiteral("Recent calls"), &menu_);
        calls_.front()->setSeparator(true);
        calls_.back()->setEnabled(false);
    }
    for (const RecentCall& call : recent) {
        // An ampersand would be the mark of a key.
        QString text = call.title + " · " + call.date;
        text.replace('&', "&&");
        auto* const action = new QAction(text, &menu_); // the menu owns it
        connect(action, &QAction::triggered, this, [this, id = call.id] { RecentCall::open(model_, id); });
        calls_ << action;
    }
    menu_.insertActions(callsEnd_, calls_);
    toldCalls_ = std::move(recent);
}

} // namespace varnic
