#include "Varnic/Snapshot/Scenes.h"

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/DemoData/DemoData.h"
#include "Varnic/Recording/RecordingController.h"
#include "VarnicCore/AISummariser/AIError.h"
#include "VarnicCore/AISummariser/KeyStore.h"
#include "VarnicCore/Audio/TrackWriter.h"
#include "VarnicCore/Audio/TranscriberError.h"
#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicPlatform/Capture/Permissions.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace varnic::Scenes {

namespace {

constexpr std::string_view launchCaller = "Mira";
constexpr Permissions::States allGranted{PermissionState::granted, PermissionState::granted, PermissionState::granted};

template <typename Condition>
Uuid idWhere(const AppModel& model, Condition condition) {
    const auto found = std::ranges::find_if(model.notes(), condition);
    if (found == model.notes().end()) {
        throw std::logic_error("the demonstration lacks a note");
    }
    return found->id;
}

Uuid titled(const AppModel& model, std::string_view title) {
    return idWhere(model, [title](const Note& note) { return note.title == title; });
}

Uuid callWith(const AppModel& model, std::string_view name) {
    return idWhere(model, [name](const Note& note) { return note.call && note.call->themName == name; });
}

Uuid cellBiology(const AppModel& model) {
    return titled(model, "Cell biology — week 6");
}

/// As a call is filed of which no word is known yet.
void forgetWords(AppModel& model, Uuid id, std::optional<std::string> problem) {
    model.update(id, false, [&](Note& note) {
        CallRecord call = *note.call;
        call.segments.clear();
        call.digest = std::nullopt;
        call.problem = std::move(problem);
        const bool isPinned = note.pinned;
        note = NoteEditor::callNote(id, std::move(call), std::nullopt, model.region, note.created);
        note.pinned = isPinned;
    });
}

/// Silence that can be played, in the demonstration's own folder.
void giveRecording(const AppModel& model, const Note& note) {
    const std::filesystem::path folder = model.audioFolder(note.id);
    std::filesystem::create_directories(folder);
    for (const Speaker speaker : allSpeakers) {
        TrackWriter track(folder / (std::string(rawValue(speaker)) + ".m4a"), speaker, true);
        track.writeSilence(note.call->duration);
        track.close();
    }
}

void setAI(AppModel& model, AIProviderKind provider) {
    AISettings ai;
    ai.enabled = true;
    ai.provider = provider;
    if (provider == AIProviderKind::openAICompatible) {
        ai.compatModel = "llama3.2";
    } else {
        model.keys->setKey("sk-ant-invented", ai.keyAccount());
    }
    model.settings.ai = ai;
    model.apiKey.read();
}

void showSection(AppModel& model, LibrarySection section) {
    model.section = section;
    model.selectFirstIfNeeded();
}

} // namespace

void rest(AppModel& model) {
    model.showConsent = false;
    model.showSetup = false;
    model.showTranscript = false;
    model.studyDeck = std::nullopt;
    model.processing = std::map<Uuid, ProcessingStage>();
    model.aiError = std::map<Uuid, std::string>();
    model.query = std::string();
    model.section = LibrarySection::all;
    model.recorder().clearDemo();
    Permissions::override = allGranted;
    model.keys = std::make_shared<MemoryKeyStore>();
    model.settings.ai = AISettings();
    model.apiKey.read();
    DemoData::clear(model);
    DemoData::load(model);
}

void call(AppModel& model) {
    const Uuid id = callWith(model, launchCaller);
    // A page looks for recordings as it opens.
    model.selection = std::nullopt;
    giveRecording(model, *model.note(id));
    model.selection = id;
}

void callAndTranscript(AppModel& model) {
    call(model);
    model.showTranscript = true;
}

void callWithoutTranscript(AppModel& model) {
    const Uuid id = callWith(model, "Clinic");
    forgetWords(model, id, std::nullopt);
    model.selection = id;
}

void callByAI(AppModel& model) {
    setAI(model, AIProviderKind::anthropic);
    model.selection = callWith(model, "Lucas");
}

void offerOfAI(AppModel& model) {
    setAI(model, AIProviderKind::anthropic);
    call(model);
}

void failureOfAI(AppModel& model) {
    offerOfAI(model);
    model.aiError = std::map<Uuid, std::string>{{callWith(model, launchCaller), AIError::rateLimited().what()}};
}

void localAI(AppModel& model) {
    setAI(model, AIProviderKind::openAICompatible);
}

void processing(AppModel& model) {
    constexpr double fraction = 0.42;
    const Uuid id = callWith(model, launchCaller);
    forgetWords(model, id, std::nullopt);
    model.processing = std::map<Uuid, ProcessingStage>{{id, ProcessingStage::transcribing(fraction)}};
    model.selection = id;
}

void problem(AppModel& model) {
    const Uuid id = callWith(model, launchCaller);
    forgetWords(model, id, TranscriberError::notAuthorized().what());
    model.selection = id;
}

void cards(AppModel& model) {
    model.selection = cellBiology(model);
}

void cardsAndTable(AppModel& model) {
    model.update(cellBiology(model), false, [](Note& note) {
        const auto firstCard = std::ranges::find(note.blocks, BlockKind::flashcard, &Block::kind);
        note.blocks.insert(firstCard, Block::table({{"Transport", "Needs energy", "Example"},
                                                    {"Diffusion", "No", "Oxygen"},
                                                    {"Through a carrier", "No", "Glucose"},
                                                    {"Pump", "Yes", "Sodium, potassium"}}));
    });
    cards(model);
}

void todoNote(AppModel& model) {
    model.selection = titled(model, "This week");
}

void venues(AppModel& model) {
    model.selection = titled(model, "Team offsite venues");
}

void calls(AppModel& model) {
    showSection(model, LibrarySection::calls);
}

void todos(AppModel& model) {
    showSection(model, LibrarySection::todos);
}

void decks(AppModel& model) {
    showSection(model, LibrarySection::cards);
}

void search(AppModel& model) {
    model.query = std::string("onboarding");
}

void searchInVain(AppModel& model) {
    model.query = std::string("zebra crossing");
}

void study(AppModel& model) {
    showSection(model, LibrarySection::cards);
    model.selection = cellBiology(model);
    model.studyDeck = cellBiology(model);
}

void live(AppModel& model) {
    constexpr double elapsed = 754;
    constexpr std::size_t lines = 6;
    DemoData::showLive(model.recorder(), elapsed, "Zoom", lines);
    model.selection = model.liveNoteID();
}

void liveStart(AppModel& model) {
    constexpr double elapsed = 3;
    DemoData::showLive(model.recorder(), elapsed, "Google Meet", 0);
    model.selection = model.liveNoteID();
}

void missingSound(AppModel& /*model*/) {
    Permissions::override = {PermissionState::granted, PermissionState::denied, PermissionState::granted};
}

void empty(AppModel& model) {
    DemoData::clear(model);
}

void noTodos(AppModel& model) {
    empty(model);
    showSection(model, LibrarySection::todos);
}

void noDecks(AppModel& model) {
    empty(model);
    showSection(model, LibrarySection::cards);
}

} // namespace varnic::Scenes
