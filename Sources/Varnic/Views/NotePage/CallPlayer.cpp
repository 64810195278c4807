#include "Varnic/Views/NotePage/CallPlayer.h"

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/LoopExecutor.h"
#include "Varnic/Views/Context/ViewContext.h"
#include "VarnicCore/Models/Clock.h"

#include <QPointer>
#include <QQmlEngine>
#include <QSettings>

#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>

namespace varnic {

using namespace std::chrono_literals;

namespace {

constexpr std::array allSpeeds{0.75, 1.0, 1.25, 1.5, 1.75, 2.0};
constexpr const char* speedKey = "window/playbackSpeed";

QString written(double speed) {
    return QString::number(speed) + "×";
}

} // namespace

CallPlayer::CallPlayer(QObject* parent)
    : QObject(parent), player_([self = QPointer(this), loop = &LoopExecutor::main()](TrackPlayer::Event event) {
          loop->post([self, event] {
              if (self) {
                  self->take(event);
              }
          });
      }) {
    tick_.setInterval(100ms);
    connect(&tick_, &QTimer::timeout, this, &CallPlayer::follow);
}

void CallPlayer::componentComplete() {
    if (const QSettings* const store = settings()) {
        const double stored = store->value(speedKey).toDouble();
        player_.setSpeed(std::ranges::find(allSpeeds, stored) == allSpeeds.end() ? 1 : stored);
        Q_EMIT speedChanged();
    }
}

QSettings* CallPlayer::settings() const {
    const QQmlEngine* const engine = qmlEngine(this);
    return engine != nullptr ? &ViewContext::of(*engine).model.settings.store() : nullptr;
}

int CallPlayer::speedIndex() const {
    return static_cast<int>(std::ranges::find(allSpeeds, player_.speed()) - allSpeeds.begin());
}

void CallPlayer::setSpeedIndex(int index) {
    const double speed = allSpeeds.at(static_cast<std::size_t>(index));
    if (speed != player_.speed()) {
        player_.setSpeed(speed);
        if (QSettings* const store = settings()) {
            store->setValue(speedKey, speed);
        }
        Q_EMIT speedChanged();
    }
}

QString CallPlayer::speedText() const {
    return written(player_.speed());
}

QStringList CallPlayer::speeds() {
    QStringList texts;
    std::ranges::transform(allSpeeds, std::back_inserter(texts), written);
    return texts;
}

void CallPlayer::setTracks(const QList<QUrl>& tracks) {
    if (tracks == tracks_) {
        return;
    }
    tracks_ = tracks;
    if (tracks_.isEmpty()) {
        player_.stop();
    } else {
        std::vector<std::filesystem::path> files;
        for (const QUrl& track : tracks_) {
            files.emplace_back(track.toLocalFile().toStdString());
        }
        player_.load(std::move(files));
    }
    setTime(0);
    follow();
    Q_EMIT tracksChanged();
}

QString CallPlayer::stamp() const {
    return QString::fromStdString(Clock::stamp(time_));
}

void CallPlayer::seek(double seconds, bool play) {
    setTime(seconds);
    player_.seek(seconds);
    if (play) {
        player_.play();
    }
    follow();
}

void CallPlayer::skip(double seconds) {
    seek(std::clamp(time_ + seconds, 0.0, player_.duration()), false);
}

void CallPlayer::toggle() {
    if (player_.playing()) {
        player_.pause();
    } else {
        player_.play();
    }
    follow();
}

void CallPlayer::take(TrackPlayer::Event event) {
    if (event == TrackPlayer::Event::failed && !player_.problem().empty()) {
        tellProblem(player_.problem());
    }
    follow();
}

void CallPlayer::tellProblem(const std::string& sentence) {
    if (const QQmlEngine* engine = qmlEngine(this)) {
        ViewContext::of(*engine).model.flash({.text = sentence, .symbol = "exclamationmark.triangle"});
    }
}

void CallPlayer::follow() {
    const bool available = player_.available();
    const bool playing = player_.playing();
    if (available) {
        setTime(player_.time());
    }
    if (available != available_) {
        available_ = available;
        Q_EMIT availableChanged();
    }
    if (playing != playing_) {
        playing_ = playing;
        Q_EMIT playingChanged();
    }
    if (playing) {
        tick_.start();
    } else {
        tick_.stop();
    }
}

void CallPlayer::setTime(double time) {
    if (time != time_) {
        time_ = time;
        Q_EMIT timeChanged();
    }
}

} // namespace varnic
