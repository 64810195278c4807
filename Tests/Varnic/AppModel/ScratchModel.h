#pragma once

#include "Varnic/AppModel/AppModel.h"
#include "Varnic/AppModel/AppPlaces.h"
#include "Varnic/Background.h"
#include "Varnic/EventLoop.h"
#include "VarnicCore/Files/Folders.h"
#include "VarnicCore/TemporaryFolder.h"

#include <QCoreApplication>

#include <memory>
#include <string>
#include <vector>

namespace varnic {

/// The application on a library and settings of the test's own.
class ScratchModel {
public:
    ScratchModel() { restart(); }

    /// On a copy of a library as it is on disk now.
    explicit ScratchModel(const std::filesystem::path& library) {
        std::filesystem::copy(library, folder() / "Library", std::filesystem::copy_options::recursive);
        restart();
    }

    ScratchModel(const ScratchModel&) = delete;
    ScratchModel& operator=(const ScratchModel&) = delete;

    ~ScratchModel() {
        model_.reset();
        do {
            Background::finish();
            QCoreApplication::processEvents();
        } while (Background::isBusy());
    }

    AppModel& operator*() { return *model_; }

    AppModel* operator->() { return model_.get(); }

    [[nodiscard]] std::filesystem::path folder() const { return temporary_.path(); }

    /// The program ends and starts again.
    void restart() {
        model_.reset();
        model_ = std::make_unique<AppModel>(
            AppPlaces{.dataDirectory = folder() / "Library",
                      .spareFolder = folder() / "Unsaved",
                      .isScratch = true,
                      .settings = std::make_unique<QSettings>(
                          QString::fromStdString((folder() / "settings.ini").string()), QSettings::IniFormat)});
        model_->region = Region{.locale = "en_GB", .timeZone = "UTC"};
    }

    void load() { QCoro::waitFor(model_->load()); }

    [[nodiscard]] std::filesystem::path notes() const { return folder() / "Library" / "notes"; }

    /// The library's notes can't be looked into until they are put back: a link to itself is in their place.
    void takeNotesAway() const {
        std::filesystem::rename(notes(), folder() / "away");
        std::filesystem::create_symlink("notes", notes());
    }

    void putNotesBack() const {
        std::filesystem::remove(notes());
        std::filesystem::rename(folder() / "away", notes());
    }

    /// What is on disk.
    [[nodiscard]] std::vector<Note> stored() {
        model_->flushSaves();
        LibraryStore store(folder() / "Library");
        return store.loadAll(currentDate());
    }

private:
    TemporaryFolder temporary_;
    std::unique_ptr<AppModel> model_;
};

} // namespace varnic
