#pragma once

#include "VarnicPlatform/Playback/TrackPlayer.h"

#include <QList>
#include <QObject>
#include <QQmlParserStatus>
#include <QStringList>
#include <QTimer>
#include <QUrl>
#include <QtQmlIntegration>

class QSettings;

namespace varnic {

/// Replays the tracks of a call for its page. Main thread.
class CallPlayer : public QObject, public QQmlParserStatus {
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    /// What to play, all at once from 0; setting other ones starts over, stopped at 0.
    Q_PROPERTY(QList<QUrl> tracks READ tracks WRITE setTracks NOTIFY tracksChanged)
    /// The position that is being played, in seconds; the last one played when it ends.
    Q_PROPERTY(double time READ time NOTIFY timeChanged)
    Q_PROPERTY(QString stamp READ stamp NOTIFY timeChanged)
    Q_PROPERTY(bool playing READ playing NOTIFY playingChanged)
    /// Whether there is something to play.
    Q_PROPERTY(bool available READ available NOTIFY availableChanged)
    /// Which of `speeds` it plays at; the same for all calls, and remembered.
    Q_PROPERTY(int speedIndex READ speedIndex WRITE setSpeedIndex NOTIFY speedChanged)
    Q_PROPERTY(QString speedText READ speedText NOTIFY speedChanged)
    /// The speeds that there are, as the user reads them.
    Q_PROPERTY(QStringList speeds READ speeds CONSTANT)

public:
    explicit CallPlayer(QObject* parent = nullptr);

    void classBegin() override {}

    void componentComplete() override;

    [[nodiscard]] QList<QUrl> tracks() const { return tracks_; }

    void setTracks(const QList<QUrl>& tracks);

    [[nodiscard]] double time() const { return time_; }

    [[nodiscard]] QString stamp() const;

    [[nodiscard]] bool playing() const { return playing_; }

    [[nodiscard]] bool available() const { return available_; }

    [[nodiscard]] int speedIndex() const;
    void setSpeedIndex(int index);
    [[nodiscard]] QString speedText() const;
    [[nodiscard]] static QStringList speeds();

    /// Goes to a place, exact to the sample, and stays paused or playing as it was, or plays from there. Without
    /// tracks only `time` moves.
    Q_INVOKABLE void seek(double seconds, bool play);
    /// Goes so many seconds further, or back below 0, within the call.
    Q_INVOKABLE void skip(double seconds);
    /// Plays if paused, pauses if playing.
    Q_INVOKABLE void toggle();

Q_SIGNALS:
    void tracksChanged();
    void timeChanged();
    void playingChanged();
    void availableChanged();
    void speedChanged();

private:
    [[nodiscard]] QSettings* settings() const;
    void take(TrackPlayer::Event event);
    void follow();
    void setTime(double time);
    void tellProblem(const std::string& sentence);

    QList<QUrl> tracks_;
    double time_ = 0;
    bool playing_ = false;
    bool available_ = false;
    QTimer tick_;
    TrackPlayer player_;
};

} // namespace varnic
