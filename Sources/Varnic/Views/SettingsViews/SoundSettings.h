#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/Recording/DeviceList.h"
#include "Varnic/Recording/LiveLevel.h"

#include <QObject>
#include <QQmlParserStatus>
#include <QtQmlIntegration>

#include <vector>

namespace varnic {

/// The devices that one side of a call can be recorded from, and how loud it is there now. Main thread.
class DeviceSide : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("SoundSettings has them.")
    /// The default first; a device that was chosen and is gone last.
    Q_PROPERTY(QList<QString> choices READ choices NOTIFY changed)
    /// A few words about each of them.
    Q_PROPERTY(QList<QString> details READ details NOTIFY changed)
    Q_PROPERTY(int selected READ selected WRITE setSelected NOTIFY changed)
    /// What stands in the way of hearing it; empty where all is well.
    Q_PROPERTY(QString notice READ notice NOTIFY changed)
    /// 0 to 1, while it is listened to.
    Q_PROPERTY(double level READ level NOTIFY levelChanged)

public:
    /// Both must outlive this.
    DeviceSide(Speaker side, AppModel& model, DeviceList& devices);

    [[nodiscard]] QList<QString> choices() const;
    [[nodiscard]] QList<QString> details() const;
    [[nodiscard]] int selected() const;
    void setSelected(int choice);
    [[nodiscard]] QString notice() const;

    [[nodiscard]] double level() const { return static_cast<double>(level_.level.value()); }

    void setListening(bool listens);

Q_SIGNALS:
    void changed();
    void levelChanged();

private:
    [[nodiscard]] bool isTheirs() const { return side_ == Speaker::them; }

    [[nodiscard]] QProperty<DeviceChoice>& setting() const;
    [[nodiscard]] std::vector<SoundDevice> known() const;
    [[nodiscard]] std::vector<DeviceChoice> rows() const;
    void listen();

    const Speaker side_;
    AppModel& model_;
    DeviceList& devices_;
    LiveLevel level_{side_};
    bool listens_ = false;
    std::vector<QPropertyNotifier> watchers_;
};

/// What both sides of calls are recorded from, followed as long as this lives. Main thread.
class SoundSettings : public QObject, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(varnic::DeviceSide* you READ you NOTIFY ready)
    Q_PROPERTY(varnic::DeviceSide* them READ them NOTIFY ready)
    /// The user lets the devices be listened to.
    Q_PROPERTY(bool listens READ listens WRITE setListens NOTIFY listensChanged)

public:
    using QObject::QObject;

    /// Null before this is complete.
    [[nodiscard]] DeviceSide* you() const { return you_.get(); }

    [[nodiscard]] DeviceSide* them() const { return them_.get(); }

    [[nodiscard]] bool listens() const { return listens_; }

    void setListens(bool listens);

    void classBegin() override {}

    void componentComplete() override;

Q_SIGNALS:
    void ready();
    void listensChanged();

private:
    DeviceList devices_;
    std::unique_ptr<DeviceSide> you_;
    std::unique_ptr<DeviceSide> them_;
    bool listens_ = false;
};

} // namespace varnic
