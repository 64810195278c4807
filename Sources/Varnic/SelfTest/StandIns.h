#pragma once

#include "Varnic/SelfTest/FakeAI.h"

#include <QObject>

#include <memory>
#include <string>
#include <vector>

namespace varnic {

class AppDelegate;
class AppModel;
class Checks;

/// What stands in for the world around the program while it tests itself, so that it reaches neither devices nor
/// network, clipboard, key ring or keyboard, and asks the user nothing. Main thread; the model must outlive it.
class StandIns : public QObject {
    Q_OBJECT

public:
    /// Puts all of it in place. It stays so for the rest of the process.
    StandIns(AppModel& model, AppDelegate& shell);

    /// The text that was copied last.
    [[nodiscard]] const std::string& pasteboard() const { return world_->pasteboard; }

    /// The addresses that were opened, in order.
    [[nodiscard]] const std::vector<std::string>& opened() const { return world_->opened; }

    [[nodiscard]] FakeAI& ai() const { return *ai_; }

    /// Whether all that is real was left alone.
    void closingChecks(Checks& checks) const;

private:
    struct World {
        std::string pasteboard;
        std::vector<std::string> opened;
    };

    void countClipboardChanges();

    /// Shared with what the model calls until its end.
    std::shared_ptr<World> world_ = std::make_shared<World>();
    std::shared_ptr<FakeAI> ai_ = std::make_shared<FakeAI>();
    int clipboardChanges_ = 0;
};

} // namespace varnic
