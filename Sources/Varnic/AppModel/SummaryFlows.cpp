#include "Varnic/AppModel/AppModel.h"

#include "Varnic/Background.h"
#include "VarnicCore/AISummariser/AIError.h"
#include "VarnicCore/AISummariser/AISummariser.h"
#include "VarnicCore/AISummariser/SummariserFactory.h"
#include "VarnicCore/Editor/NoteEditor.h"
#include "VarnicCore/Summariser/ExtractiveSummariser.h"

#include <QPointer>

#include <fmt/format.h>

namespace varnic {

namespace {

/// Whether the note's title is the one that its digest gave it.
bool hasDigestsTitle(const Note& note) {
    return note.call && note.call->digest && note.title == note.call->digest->title;
}

template <typename Container, typename Change>
void change(QProperty<Container>& property, Change apply) {
    Container values = property.value();
    apply(values);
    property = std::move(values);
}

} // namespace

QCoro::Task<> AppModel::runAI(Uuid id) {
    const Note* stored = note(id);
    if (stored == nullptr || !callActions(*stored, {}).summarise) {
        co_return;
    }
    if (!settings.ai.value().enabled) {
        co_return;
    }
    change(aiRunning, [id](auto& running) { running.insert(id); });
    change(aiError, [id](auto& errors) { errors.erase(id); });
    const QPointer self(this);
    std::optional<CallDigest> digest;
    std::string problem;
    const std::stop_token stop = stopProcessing_.get_token();
    // As all is now, whatever changes while the key is waited for.
    const auto digestWith = [asked = settings.ai.value(), transport = transport, url = anthropicURL,
                             segments = stored->call->segments, told = context(*stored->call),
                             stop](const std::optional<std::string>& key) {
        return SummariserFactory::ai(asked, key, transport, url)->digest(segments, told, stop);
    };
    const KeyReading key = co_await apiKey.readForRequest();
    if (!self) {
        co_return;
    }
    const auto work = [digestWith, key = key.key] { return digestWith(key); };
    try {
        digest = co_await inBackground(work);
    } catch (const AIError& error) {
        // Also that of a server on this computer which wants one after all.
        const bool lacksKey = error.kind() == AIError::Kind::noKey || error.kind() == AIError::Kind::badKey;
        problem = lacksKey && !key.key && !key.problem.empty() ? key.problem : error.what();
    } catch (const std::exception& error) {
        problem = error.what();
    }
    if (!self) {
        co_return;
    }
    if (digest) {
        keepEarlier(id);
        update(id, true, [&digest](Note& note) {
            NoteEditor::apply(*digest, note, hasDigestsTitle(note) || note.title.empty(), currentDate());
        });
        flash(undoable(id, fmt::format("Summary by {}", digest->provider), "sparkles"));
    } else if (!stop.stop_requested()) {
        change(aiError, [&](auto& errors) { errors[id] = problem; });
    }
    change(aiRunning, [id](auto& running) { running.erase(id); });
}

void AppModel::useLocalSummary(Uuid id) {
    const Note* stored = note(id);
    if (stored == nullptr || !stored->call || stored->call->segments.empty()) {
        return;
    }
    const CallDigest digest =
        ExtractiveSummariser::makeDigest(stored->call->segments, context(*stored->call), region, currentDate());
    keepEarlier(id);
    update(id, true, [&digest](Note& note) { NoteEditor::apply(digest, note, hasDigestsTitle(note), currentDate()); });
    change(aiError, [id](auto& errors) { errors.erase(id); });
    flash(undoable(id, "Summary made on this Mac", "sparkles"));
}

} // namespace varnic
