#pragma once

#include "Varnic/Recording/TrackRecorder.h"
#include "VarnicCore/Audio/CaptureSource.h"
#include "VarnicCore/Library/RecordingMark.h"
#include "VarnicCore/Models/Segment.h"
#include "VarnicCore/Models/Uuid.h"
#include "VarnicCore/Pipeline/Recording.h"
#include "VarnicCore/Pipeline/SessionState.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace varnic {

/// What a recording left behind.
struct RecordingResult {
    Uuid noteID;
    std::filesystem::path folder;
    CallTracks tracks;
    Date startedAt;
    /// Seconds, the length of both tracks.
    double duration = 0;
    std::string source;
    /// The live transcript, partial results included.
    std::vector<Segment> live;
    /// Whether `live` lacks words, since the recognisers had not transcribed all of the audio in time.
    bool isLiveBehind = false;
    /// The id of the speech model that wrote `live`, if it is one of this machine's.
    std::string liveModel;
    /// The language tag that `live` is in; empty without one.
    std::string liveLanguage;
    /// What of the audio could not be kept, and why, in sentences; nothing where all is there.
    std::optional<std::string> loss;
    /// Tells the folder from one whose recording died. To be removed once the call is filed.
    std::shared_ptr<RecordingMarkFile> mark;
};

/// Runs one recording from the first buffer to the closed files, and shows how it fares. It knows nothing of notes but
/// an id. Main thread.
class RecordingController : public QObject {
    Q_OBJECT

public:
    using MakeRecognizer = std::function<std::unique_ptr<LiveRecognizer>(
        Speaker speaker, const std::string& locale, LiveRecognizer::Lines onPartial, LiveRecognizer::Lines onCommit)>;

    /// The display moves 20 times a second and remembers a minute.
    static constexpr std::size_t samplesKept = 1200;

    explicit RecordingController(QObject* parent = nullptr);
    RecordingController(const RecordingController&) = delete;
    RecordingController& operator=(const RecordingController&) = delete;
    /// May come at any time: a recording that starts or stops then ends by itself, and its folder stays as that of one
    /// that died.
    ~RecordingController() override;

    /// Makes a side's live recogniser, or nothing where the machine can't; the speech models of this machine unless
    /// replaced. Called on another thread.
    MakeRecognizer makeRecognizer;
    /// Bytes left on the disk of a folder, if known; the file system's word unless replaced.
    std::function<std::optional<std::uintmax_t>(const std::filesystem::path&)> diskSpace;

    [[nodiscard]] const SessionState& state() const { return state_; }

    /// Seconds of recorded audio.
    [[nodiscard]] double elapsed() const { return elapsed_; }

    /// How loud it was, 20 a second, oldest first.
    [[nodiscard]] const std::vector<InkSample>& samples() const { return samples_; }

    /// Final lines of the live transcript.
    [[nodiscard]] const std::vector<Segment>& committed() const { return committed_; }

    /// Partial results of each side.
    [[nodiscard]] const std::map<Speaker, std::vector<Segment>>& partial() const { return partial_; }

    /// The sides that really record; one whose audio comes late joins them then.
    [[nodiscard]] const std::vector<Speaker>& sides() const { return sides_; }

    [[nodiscard]] const std::string& source() const { return source_; }

    /// What the user should know about the recording as it runs.
    [[nodiscard]] const std::optional<std::string>& warning() const { return warning_; }

    [[nodiscard]] const Uuid& noteID() const { return noteID_; }

    [[nodiscard]] Date startedAt() const { return startedAt_; }

    [[nodiscard]] bool isPaused() const;

    /// Whether what is said is being transcribed as it is said.
    [[nodiscard]] bool hasLiveTranscript() const;

    /// All lines, final or not, by their start.
    [[nodiscard]] std::vector<Segment> liveSegments() const;

    /// Returns when audio comes in; at once while another recording runs. `liveLocale` asks for a live transcript.
    /// Throws CaptureError, LibraryError, and std::runtime_error where the disk has no room for an hour; `state` tells
    /// the failure too then.
    QCoro::Task<> start(Uuid noteID, std::filesystem::path folder, std::shared_ptr<CaptureSource> capture,
                        std::optional<std::string> liveLocale, std::string source, WantedSides wanted = {});

    /// Ends the recording and closes its files; nothing when none was running.
    QCoro::Task<std::optional<RecordingResult>> stop();

    /// Ends the recording and removes its folder; nothing when none runs.
    void discard();

    /// From here on nothing is recorded, and `elapsed` stands still.
    void pause();
    void resume();

    /// Shows a recording that isn't one.
    void loadDemo(double elapsed, std::vector<InkSample> samples, std::vector<Segment> committed,
                  std::map<Speaker, std::vector<Segment>> partial, std::string source);
    void clearDemo();

Q_SIGNALS:
    void stateChanged();
    /// 20 times a second while recording: `elapsed` and `samples` have changed.
    void ticked();
    void transcriptChanged();
    void warningChanged();
    /// The disk is full: whoever holds the recording should stop it now.
    void mustStop();

private:
    void setState(SessionState state);
    void setWarning(std::optional<std::string> warning);
    void reset(std::string source);
    std::function<TrackRecorder::Recognizers()> recognizerMaker(std::string locale);
    LiveRecognizer::Lines onMain(void (RecordingController::*take)(Speaker, std::vector<Segment>));
    void takePartial(Speaker speaker, std::vector<Segment> lines);
    void takeCommitted(Speaker speaker, std::vector<Segment> lines);
    void begin(std::vector<Speaker> sides);
    void takeInLateSides();
    [[nodiscard]] CallTracks tracks() const;
    void fail(const std::string& message);
    void tick();
    void checkHealth();
    std::vector<Speaker> silentSides();
    [[nodiscard]] double now() const;
    void release();

    SessionState state_;
    double elapsed_ = 0;
    std::vector<InkSample> samples_;
    std::vector<Segment> committed_;
    std::map<Speaker, std::vector<Segment>> partial_;
    std::vector<Speaker> sides_;
    /// The sides that may still come.
    std::vector<Speaker> awaited_;
    std::string source_ = "Call";
    std::string liveLanguage_;
    std::optional<std::string> warning_;

    Uuid noteID_;
    Date startedAt_;
    std::filesystem::path folder_;
    /// Time zero on the HostClock.
    double hostStart_ = 0;
    /// Counts recordings, so that what comes late from an earlier one is told apart.
    int session_ = 0;
    std::shared_ptr<CaptureSource> capture_;
    std::shared_ptr<TrackRecorder> recorder_;
    std::shared_ptr<RecordingMarkFile> mark_;
    /// Since when a side has been expected to deliver, on the HostClock.
    std::map<Speaker, double> expectedSince_;
    QTimer ticker_;
    QTimer healthTimer_;
};

} // namespace varnic
