#pragma once

#include "BrevinKit/UpdateFeed.h"

#include <QObject>
#include <QQmlEngine>
#include <QString>
#include <QtQmlIntegration>

#include <optional>

namespace brevin {
class Updater;
}

namespace varnic {

/// The updater as its window and the settings show it. Main thread.
class UpdateModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// Whether this program has a feed to check; without one there is nothing to show.
    Q_PROPERTY(bool isOn READ isOn CONSTANT)
    /// The running version.
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(bool automaticallyDownloads READ automaticallyDownloads WRITE setAutomaticallyDownloads NOTIFY
                   automaticallyDownloadsChanged)
    /// One line for the settings; may be empty.
    Q_PROPERTY(QString status READ status NOTIFY changed)
    Q_PROPERTY(bool isChecking READ isChecking NOTIFY changed)
    Q_PROPERTY(bool isDownloading READ isDownloading NOTIFY changed)
    // What the window says in the phase; empty for nothing.
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString detail READ detail NOTIFY changed)
    Q_PROPERTY(QString notes READ notes NOTIFY changed)
    /// Why the release can’t be installed from here.
    Q_PROPERTY(QString hint READ hint NOTIFY changed)
    /// What the default button says.
    Q_PROPERTY(QString action READ action NOTIFY changed)
    /// Whether it can wait, and what is there goes on meanwhile.
    Q_PROPERTY(bool canWait READ canWait NOTIFY changed)
    /// 0 to 1.
    Q_PROPERTY(double progress READ progress NOTIFY changed)

public:
    enum Phase { idle, checking, upToDate, available, downloading, ready, failed };

    static UpdateModel* create(const QQmlEngine* engine, const QJSEngine* scripts);

    /// Null where there is no updater.
    explicit UpdateModel(brevin::Updater* updater, QObject* parent = nullptr);

    [[nodiscard]] bool isOn() const;
    [[nodiscard]] QString version() const;
    [[nodiscard]] bool automaticallyDownloads() const;
    void setAutomaticallyDownloads(bool downloads);
    [[nodiscard]] QString status() const;
    [[nodiscard]] Phase phase() const;

    [[nodiscard]] bool isChecking() const { return phase() == checking; }

    [[nodiscard]] bool isDownloading() const { return phase() == downloading; }

    [[nodiscard]] QString title() const;
    [[nodiscard]] QString detail() const;
    [[nodiscard]] QString notes() const;
    [[nodiscard]] QString hint() const;
    [[nodiscard]] QString action() const;
    [[nodiscard]] bool canWait() const;
    [[nodiscard]] double progress() const;

    /// What “Check Now” does: it opens the window, too.
    Q_INVOKABLE void checkNow();
    /// What the default button does.
    Q_INVOKABLE void act();

Q_SIGNALS:
    void changed();
    void automaticallyDownloadsChanged();
    /// The window has nothing more to say.
    void dismissed();

private:
    void onPhaseChanged();
    [[nodiscard]] bool canInstall() const;
    [[nodiscard]] std::optional<brevin::UpdateFeed> feed() const;
    [[nodiscard]] QString name() const;
    [[nodiscard]] QString newVersion() const;

    brevin::Updater* updater_;
};

} // namespace varnic
