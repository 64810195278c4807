#include "Varnic/AppModel/AppModel.h"

#include "Varnic/Background.h"
#include "VarnicCore/Audio/AudioMix.h"
#include "VarnicCore/Export/Exporter.h"
#include "VarnicCore/Files/AtomicWrite.h"
#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/Library/LibraryLock.h"
#include "VarnicCore/Models/Wording.h"
#include "VarnicCore/Pipeline/Consent.h"

#include <QPointer>
#include <QUrl>

#include <fmt/format.h>

namespace varnic {

namespace {

/// The file, or one of a name like it, where none is yet. Throws LibraryError where that cannot be found out.
std::filesystem::path freeName(const std::filesystem::path& file) {
    std::filesystem::path name = file;
    for (int i = 2; Folders::isThere(name); ++i) {
        name.replace_filename(fmt::format("{} {}{}", file.stem().string(), i, file.extension().string()));
    }
    return name;
}

const EmailDraft* emailOf(const Note* note) {
    return note != nullptr && note->call ? note->call->email() : nullptr;
}

} // namespace

void AppModel::removeAudio(Uuid id) {
    const Note* stored = note(id);
    if (stored == nullptr || !stored->call || processing.value().contains(id)) {
        return;
    }
    auto lock = LibraryLock::forCall(store_.audioFolder(id));
    if (!lock) {
        flash(callIsBusy());
        return;
    }
    store_.removeAudio(id, std::move(lock));
    editCall(id, [](CallRecord& call) {
        call.audioFolder.reset();
        call.tracks.clear();
    });
    flash({.text = "Audio removed — the transcript stays", .symbol = "waveform.slash"});
}

QCoro::Task<> AppModel::exportAudio(Uuid id) {
    const Note* stored = note(id);
    if (stored == nullptr) {
        co_return;
    }
    const CallFiles files = callFiles(*stored);
    if (!callActions(*stored, files).exportAudio) {
        co_return;
    }
    std::filesystem::path name = Exporter::fittingFileName(*stored, ExportFormat::markdown);
    std::string suggested = name.replace_extension(".m4a").string();
    const QPointer self(this);
    const auto file = co_await desktop.chooseDestination(std::move(suggested));
    if (!self || !file) {
        co_return;
    }
    const auto mix = [tracks = files.tracks, file = *file] { AudioMix::stereo(tracks.you, tracks.them, file); };
    bool isSaved = true;
    try {
        co_await inBackground(mix);
    } catch (const std::exception&) {
        isSaved = false;
    }
    if (!self) {
        co_return;
    }
    flash(isSaved ? ToastMessage{.text = "Saved the recording (you left, them right)", .symbol = "waveform"}
                  : ToastMessage{.text = "Couldn’t save the recording", .symbol = warningSymbol});
}

QCoro::Task<> AppModel::exportNote(Uuid id, ExportFormat format) {
    const Note* stored = note(id);
    if (stored == nullptr) {
        co_return;
    }
    std::string suggested = Exporter::fittingFileName(*stored, format);
    const QPointer self(this);
    const auto file = co_await desktop.chooseDestination(std::move(suggested));
    if (!self || !file) {
        co_return;
    }
    try {
        exportFile(id, format, *file);
        flash({.text = fmt::format("Exported {}", title(format)), .symbol = "square.and.arrow.up"});
    } catch (const std::exception& error) {
        flash({.text = fmt::format("Export failed: {}", error.what()), .symbol = warningSymbol});
    }
}

void AppModel::exportFile(Uuid id, ExportFormat format, const std::filesystem::path& file) const {
    if (const Note* stored = note(id)) {
        AtomicWrite::replace(file, Exporter::data(*stored, format, exportOptions(), region),
                             AtomicWrite::Readers::asUsual);
    }
}

QCoro::Task<bool> AppModel::saveCopiesElsewhere() {
    std::string message = "Choose a folder for what couldn’t be saved";
    const QPointer self(this);
    const auto folder = co_await desktop.chooseFolder(std::move(message));
    if (!self || !folder) {
        co_return false;
    }
    for (const Uuid& id : unsavedNotes()) {
        try {
            exportFile(id, ExportFormat::markdown,
                       freeName(*folder / Exporter::fileName(*note(id), ExportFormat::markdown)));
        } catch (const std::exception& error) {
            flash({.text = fmt::format("Export failed: {}", error.what()), .symbol = warningSymbol});
            co_return false;
        }
    }
    co_return true;
}

ExportOptions AppModel::exportOptions() const {
    const std::string& name = settings.yourName.value();
    return {.includeTranscript = true, .includeEmail = true, .yourName = name.empty() ? "You" : name};
}

void AppModel::copyEmail(Uuid id) {
    if (const EmailDraft* email = emailOf(note(id))) {
        desktop.copyText(fmt::format("Subject: {}\n\n{}", email->subject, email->body));
        flash({.text = "Email copied", .symbol = copySymbol});
    }
}

std::optional<std::string> AppModel::mailtoURL(Uuid id) const {
    const EmailDraft* email = emailOf(note(id));
    if (email == nullptr) {
        return std::nullopt;
    }
    const auto encoded = [](const std::string& text) {
        return QUrl::toPercentEncoding(QString::fromStdString(text)).toStdString();
    };
    return fmt::format("mailto:?subject={}&body={}", encoded(email->subject), encoded(email->body));
}

void AppModel::openInMail(Uuid id) const {
    if (const auto url = mailtoURL(id)) {
        desktop.openURL(*url);
    }
}

void AppModel::copyHeadsUp() {
    desktop.copyText(Wording::shown(Consent::headsUp(settings.headsUpTone.value(), settings.yourName.value())));
    flash({.text = "Heads-up copied — paste it into the call’s chat", .symbol = copySymbol});
}

} // namespace varnic
