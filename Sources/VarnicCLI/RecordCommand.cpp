#include "Varnic/Recording/RecordingController.h"
#include "Varnic/Recording/RecordingHealth.h"
#include "VarnicCLI/CallFiling.h"
#include "VarnicCLI/FlowRunner.h"
#include "VarnicCLI/MissingDevices.h"
#include "VarnicCLI/SoundDeviceChoice.h"
#include "VarnicCLI/Terminal.h"
#include "VarnicCore/Audio/CaptureError.h"
#include "VarnicCore/Models/Clock.h"
#include "VarnicCore/Models/Wording.h"
#include "VarnicPlatform/Capture/LiveCapture.h"

#include <QEventLoop>
#include <QTimer>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <limits>

namespace varnic::cli {

namespace {

using namespace std::chrono_literals;

/// The seconds of `--for`; without it, as long as it takes.
double limit(const Arguments& arguments) {
    const auto text = arguments.value("for");
    if (!text) {
        return std::numeric_limits<double>::infinity();
    }
    double seconds = 0;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), seconds);
    if (error != std::errc() || end != text->data() + text->size() || !(seconds > 0)) {
        throw UsageError(fmt::format("--for wants seconds, not “{}”", *text));
    }
    return seconds;
}

/// A level of 0 to 1 as a bar that is read at a glance.
std::string meter(float level) {
    constexpr std::array<std::string_view, 9> bars{" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
    const auto step = static_cast<std::size_t>(std::clamp(level, 0.0F, 1.0F) * 8 + 0.5F);
    return std::string(bars[step]);
}

/// One recording, from its first sample to its note, on the terminal.
class RecordingSession {
public:
    RecordingSession(AppModel& model, const LiveCapture& capture, const Interruption& interruption, double limit,
                     std::string yourName)
        : model_(model), capture_(capture), interruption_(interruption), limit_(limit),
          yourName_(yourName.empty() ? "You" : std::move(yourName)) {}

    /// Throws std::runtime_error when nothing could be recorded. The finished note.
    Note run() {
        // Without a screen there is no sheet to ask on: what can be recorded is, and the rest is said.
        QCoro::waitFor(model_.startRecording(true));
        if (!isRecording(model_.recorder().state())) {
            throw std::runtime_error(whyNot());
        }
        id_ = model_.recorder().noteID();
        for (const std::string& sentence : missingDevices(SoundSurvey::take())) {
            tell(sentence);
        }
        say("Recording. Ctrl-C stops.");
        QEventLoop loop;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            step();
            if (isFinished()) {
                loop.quit();
            }
        });
        timer.start(50ms);
        loop.exec();
        model_.flushSaves();
        return *model_.note(id_);
    }

private:
    void step() {
        RecordingController& recorder = model_.recorder();
        printNewLines();
        printNewTroubles();
        checkOutput();
        if (isRecording(recorder.state())) {
            line_.show(status());
            if (interruption_.count() > 0 || isUnheard_ || recorder.elapsed() >= limit_) {
                stoppedBy_ = interruption_.count();
                model_.stopRecording();
            }
            return;
        }
        const auto& stages = model_.processing.value();
        if (const auto stage = stages.find(id_); stage != stages.end()) {
            line_.show(Terminal::bar(stage->second));
        }
        if (interruption_.count() > stoppedBy_) {
            model_.cancelProcessing();
        }
    }

    /// Why nothing is recorded: the very reason, where it is known, rather than the hint at a window's settings.
    [[nodiscard]] std::string whyNot() const {
        const std::string told = toastText(model_);
        const std::vector<std::string> missing = missingDevices(SoundSurvey::take());
        if (missing.empty()) {
            return told;
        }
        const bool isByMissing = told == Wording::shown(CaptureError::nothingToRecord().what());
        return fmt::format("{} `varnic-cli devices` tells what is missing.",
                           isByMissing ? fmt::format("{}", fmt::join(missing, " ")) : told);
    }

    [[nodiscard]] bool isFinished() const {
        return !isBusy(model_.recorder().state()) && model_.note(id_) != nullptr && model_.processing.value().empty() &&
               model_.aiRunning.value().empty();
    }

    [[nodiscard]] std::string status() const {
        const RecordingController& recorder = model_.recorder();
        const InkSample level = recorder.samples().empty() ? InkSample() : recorder.samples().back();
        std::string text =
            fmt::format("● {}  you {}  them {}", Clock::stamp(recorder.elapsed()), meter(level.you), meter(level.them));
        if (const auto trouble = warning()) {
            text += "  " + Wording::shown(*trouble);
        }
        return text;
    }

    /// That of the recorder, but for a side that is missing because nobody wants it.
    [[nodiscard]] std::optional<std::string> warning() const {
        const auto& told = model_.recorder().warning();
        const bool isOfUnwanted = !model_.wantedSides.them && told == RecordingHealth::missingSide({Speaker::you});
        return isOfUnwanted ? std::nullopt : told;
    }

    void printNewLines() {
        const auto& lines = model_.recorder().committed();
        for (; printed_ < lines.size(); ++printed_) {
            const Segment& said = lines[printed_];
            say(fmt::format("{} {}: {}", Clock::stamp(said.start), CallRecord().name(said.speaker, yourName_),
                            said.text));
        }
    }

    /// For those who don't watch the line: what was printed stays.
    void printNewTroubles() {
        const std::vector<std::string> problems = capture_.problems();
        for (; problemsTold_ < problems.size(); ++problemsTold_) {
            tell(problems[problemsTold_]);
        }
        if (warning() != warned_) {
            warned_ = warning();
            if (warned_ && std::ranges::find(problems, *warned_) == problems.end()) {
                tell(*warned_);
            }
        }
        if (const auto& toast = model_.toast.value(); toast && toast->id != toastTold_) {
            toastTold_ = toast->id;
            tell(toast->text);
        }
    }

    void tell(std::string_view sentence) { say(fmt::format("varnic-cli: {}", Wording::shown(sentence))); }

    void say(const std::string& line) {
        line_.clear();
        Terminal::print(stderr, "{}\n", line);
    }

    /// Notices that the terminal, or the reader at the other end of the pipe, is gone.
    void checkOutput() {
        if (std::ferror(stderr) != 0) {
            isUnheard_ = true;
            [[maybe_unused]] const std::FILE* silent = std::freopen("/dev/null", "w", stderr);
        }
    }

    AppModel& model_;
    const LiveCapture& capture_;
    const Interruption& interruption_;
    double limit_;
    std::string yourName_;
    Uuid id_;
    Terminal::StatusLine line_;
    std::size_t printed_ = 0;
    std::size_t problemsTold_ = 0;
    std::optional<std::string> warned_;
    std::optional<Uuid> toastTold_;
    /// Whether nobody reads any more what is said.
    bool isUnheard_ = false;
    /// Interrupts until the recording stopped; the next one stops what follows.
    int stoppedBy_ = 0;
};

/// Those of the settings, but for what the command names.
CaptureDevices devicesOf(const Arguments& arguments, const AppSettings& settings) {
    CaptureDevices chosen = settings.devices();
    const auto microphone = arguments.value("microphone");
    const auto output = arguments.value("output");
    if (microphone || output) {
        const SoundDeviceList devices = soundDevices();
        chosen.microphone =
            microphone ? deviceNamed(*microphone, devices.microphones, "microphone") : chosen.microphone;
        chosen.heard = output ? deviceNamed(*output, devices.outputs, "output") : chosen.heard;
    }
    return chosen;
}

/// Audio that came but is in no track.
void tellLoss(const LiveCapture& capture) {
    if (const auto lost = capture.lostFrames(); lost > 0) {
        Terminal::print(stderr, "varnic-cli: {:.1f} seconds of sound were lost: the computer was too busy.\n",
                        static_cast<double>(lost) / TrackFormat::sampleRate);
    }
}

} // namespace

ExitCode record(const Arguments& arguments) {
    arguments.expectNoWords();
    const double seconds = limit(arguments);
    // A reader that goes away shall not take the recording along: see RecordingSession::checkOutput.
    std::signal(SIGPIPE, SIG_IGN);
    Application application;
    AppModel& model = application.model;
    model.settings.liveTranscript = !arguments.has("no-live");
    model.settings.localeID = wishedLanguage(arguments, model.settings.localeID.value());
    model.settings.speechModel = wishedModel(arguments, model.settings.speechModel.value());
    model.settings.yourName = arguments.valueOr("your-name", model.settings.yourName.value());
    const auto capture = std::make_shared<LiveCapture>(devicesOf(arguments, model.settings));
    model.wantedSides.them = !arguments.has("mic-only");
    model.makeCapture = [capture] { return capture; };
    FilingOptions options = FilingOptions::from(arguments);
    options.yourName = model.settings.yourName.value();
    const Note note = RecordingSession(model, *capture, application.interruption, seconds, options.yourName).run();
    tellLoss(*capture);
    if (options.json) {
        Terminal::printJson(LibraryStore::encoded(note));
    } else {
        printFiled(note, options);
    }
    saveOrThrow(model, note.id);
    return tellProblem(note);
}

} // namespace varnic::cli
