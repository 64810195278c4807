#pragma once

#include "Varnic/AppModel/AppModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QUrl>
#include <QtQmlIntegration>

#include <vector>

namespace varnic {

/// What the main window shows of the model, and what is done in it. Ids are texts here. Main thread.
class Library : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(Section section READ section WRITE setSection NOTIFY sectionChanged)
    /// What the list shows.
    Q_PROPERTY(QString listTitle READ listTitle NOTIFY listTitleChanged)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY queryChanged)
    /// "Nothing matches “…”".
    Q_PROPERTY(QString noMatchText READ noMatchText NOTIFY queryChanged)
    Q_PROPERTY(bool showConsent READ showConsent WRITE setShowConsent NOTIFY showConsentChanged)
    Q_PROPERTY(bool showSetup READ showSetup WRITE setShowSetup NOTIFY showSetupChanged)
    /// The cards of a note are asked.
    Q_PROPERTY(bool isStudying READ isStudying NOTIFY isStudyingChanged)
    /// A sheet waits for an answer.
    Q_PROPERTY(bool isAsking READ isAsking NOTIFY isAskingChanged)
    /// Empty when all note files could be read.
    Q_PROPERTY(QString loadProblem READ loadProblem NOTIFY loadProblemChanged)
    /// The library cannot be looked into at the moment, which may be tried again.
    Q_PROPERTY(bool isUnreadable READ isUnreadable NOTIFY isUnreadableChanged)
    /// The library has been read: an empty list means that there is nothing in it.
    Q_PROPERTY(bool isLoaded READ isLoaded NOTIFY isLoadedChanged)
    /// What stands in place of an empty list.
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY sectionChanged)
    Q_PROPERTY(QString emptyDetail READ emptyDetail NOTIFY sectionChanged)
    Q_PROPERTY(QString privacyText READ privacyText CONSTANT)

public:
    /// The cases of LibrarySection.
    enum Section { All, Calls, Notes, Todos, Cards };
    Q_ENUM(Section)

    static Library* create(const QQmlEngine* engine, const QJSEngine* scripts);

    explicit Library(AppModel& model, QObject* parent = nullptr);

    [[nodiscard]] Section section() const { return static_cast<Section>(model_.section.value()); }

    /// The note that is open stays open, and a search goes on.
    void setSection(Section section) { model_.section = static_cast<LibrarySection>(section); }

    [[nodiscard]] QString listTitle() const;

    [[nodiscard]] QString query() const { return QString::fromStdString(model_.query.value()); }

    void setQuery(const QString& query) { model_.query = query.toStdString(); }

    /// Whether results stand in place of the section's list.
    [[nodiscard]] bool isSearching() const { return !model_.query.value().empty(); }

    [[nodiscard]] QString noMatchText() const { return "Nothing matches “" + query() + "”"; }

    [[nodiscard]] bool showConsent() const { return model_.showConsent.value(); }

    void setShowConsent(bool shows) { model_.showConsent = shows; }

    [[nodiscard]] bool showSetup() const { return model_.showSetup.value(); }

    void setShowSetup(bool shows) { model_.showSetup = shows; }

    [[nodiscard]] bool isStudying() const { return model_.studyDeck.value().has_value(); }

    [[nodiscard]] bool isAsking() const { return showConsent() || showSetup() || isStudying(); }

    [[nodiscard]] QString loadProblem() const;

    [[nodiscard]] bool isUnreadable() const { return model_.isUnreadable.value(); }

    [[nodiscard]] bool isLoaded() const { return isLoaded_ && !isUnreadable(); }

    [[nodiscard]] QString emptyTitle() const;
    [[nodiscard]] QString emptyDetail() const;
    [[nodiscard]] static QString privacyText();

    Q_INVOKABLE void newNote() { model_.newNote(); }

    /// Selects a note, and moves to a block of it if one is given.
    Q_INVOKABLE void open(const QString& note, const QString& block = {});
    /// Selects a note that the search found, and jumps to a moment of the call unless `time`, in seconds, is below 0.
    Q_INVOKABLE void openHit(const QString& note, double time);
    /// Asks the due cards of a note.
    Q_INVOKABLE void study(const QString& note);
    Q_INVOKABLE void markDone(const QString& note, const QString& block);
    /// Moves a note to the deleted ones; the toast brings it back.
    Q_INVOKABLE void remove(const QString& note);
    /// Transcribes recordings that were dropped on the window.
    Q_INVOKABLE void importFiles(const QList<QUrl>& files);

    Q_INVOKABLE void load() { model_.load(); }

    Q_INVOKABLE void dismissLoadProblem();

Q_SIGNALS:
    void sectionChanged();
    void listTitleChanged();
    void queryChanged();
    void showConsentChanged();
    void showSetupChanged();
    void isStudyingChanged();
    void isAskingChanged();
    void loadProblemChanged();
    void isUnreadableChanged();
    void isLoadedChanged();

private:
    void onNotesChanged();

    AppModel& model_;
    bool isLoaded_ = false;
    std::vector<QPropertyNotifier> watchers_;
};

} // namespace varnic
