#pragma once

#include "VarnicCore/AISummariser/KeyStore.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QProperty>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace varnic {

class AppSettings;

/// The key of the AI provider that the settings name. What keeps the keys may hang, or ask the user for a password, so
/// it is asked on another thread, and the window goes on meanwhile. Main thread.
class APIKey : public QObject {
    Q_OBJECT

public:
    /// What is known.
    struct Status {
        /// Nothing before somebody has looked, and while the first look is under way.
        std::optional<KeyState> state;
        /// The user's sentence about why the key can't be read; empty where it can, or where there is none.
        std::string problem;
        /// The key is being looked for, saved or removed.
        bool isBusy = false;

        bool operator==(const Status&) const = default;
    };

    /// Both must outlive this; another store may be put in the place of `keys` at any time.
    APIKey(AppSettings& settings, const std::shared_ptr<KeyStore>& keys);
    APIKey(const APIKey&) = delete;
    APIKey& operator=(const APIKey&) = delete;
    ~APIKey() override;

    /// Follows the provider of the settings once somebody has looked.
    QProperty<Status> status;

    /// Looks for the key, and shows in `status` what came of it. What doesn't answer within `patience` is given up.
    QCoro::Task<KeyReading> read(std::optional<std::chrono::milliseconds> patience = std::nullopt);

    /// The same for a request to the provider: where that may do without a key, a key ring that hangs holds it up by no
    /// more than a second.
    QCoro::Task<KeyReading> readForRequest();

    /// Saves what was pasted as the key, trimmed, in place of an older one. The user's sentence where it is none or
    /// could not be saved; nothing where it is saved.
    QCoro::Task<std::optional<std::string>> save(std::string pasted);

    /// Removes the key. The user's sentence where it could not be removed; nothing where there is none any more.
    QCoro::Task<std::optional<std::string>> remove();

    /// Ends what is under way as soon as it can: nobody waits for it any more.
    void abandon() { stop_.request_stop(); }

private:
    /// Throws KeyStoreError where it fails. On another thread.
    using Change = std::function<void(KeyStore& keys, const std::string& account, const std::stop_token& stop)>;

    [[nodiscard]] std::string account() const;
    QCoro::Task<std::optional<std::string>> change(Change apply, KeyReading afterwards);
    void setBusy(int change);
    void show(const std::string& account, const KeyReading& reading);

    AppSettings& settings_;
    const std::shared_ptr<KeyStore>& keys_;
    std::stop_source stop_;
    /// The account that `status` is about.
    std::string shown_;
    /// Calls that are under way.
    int busy_ = 0;
    QPropertyNotifier providerWatcher_;
};

} // namespace varnic
