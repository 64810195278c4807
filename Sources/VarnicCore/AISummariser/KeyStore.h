#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <string>

namespace varnic {

/// What a key store has to say of a key.
enum class KeyState {
    none,
    found,
    locked,     ///< There is one, which the user has to unlock first.
    noKeyRing,  ///< Nothing runs that keeps keys.
    unanswered, ///< What keeps the keys doesn't answer.
    failed      ///< The key can't be read for another reason.
};

/// What came of looking for a key.
struct KeyReading {
    KeyState state = KeyState::none;
    /// Nothing unless it was found.
    std::optional<std::string> key;
    /// The user's sentence where it is not known whether there is a key, or where it is locked; else empty.
    std::string problem;

    static KeyReading found(std::string key) { return {.state = KeyState::found, .key = std::move(key)}; }
};

/// A key could not be stored or removed; `what()` is the user's sentence and never holds the key.
class KeyStoreError : public std::runtime_error {
public:
    explicit KeyStoreError(const std::string& sentence, KeyState state = KeyState::failed)
        : std::runtime_error(sentence), state_(state) {}

    /// Which kind of failure it was.
    [[nodiscard]] KeyState state() const { return state_; }

private:
    KeyState state_;
};

/// Where API keys are kept, one an account. Every call may wait, for seconds where what keeps the keys hangs and for as
/// long as it asks the user, until a request through `stop`. Any thread.
class KeyStore {
public:
    KeyStore() = default;
    KeyStore(const KeyStore&) = delete;
    KeyStore& operator=(const KeyStore&) = delete;
    virtual ~KeyStore() = default;

    /// Looks for the key, and never asks the user anything.
    [[nodiscard]] KeyReading read(const std::string& account, const std::stop_token& stop = {}) const {
        return readNow(account, stop);
    }

    /// The stored key; nothing where there is none or it cannot be read.
    [[nodiscard]] std::optional<std::string> key(const std::string& account) const { return read(account).key; }

    /// Whether there is a key that cannot be read before the user unlocks where it is kept.
    [[nodiscard]] bool isLocked(const std::string& account) const { return read(account).state == KeyState::locked; }

    /// Stores the key in place of an older one, which stays where that fails; nothing removes it. Throws KeyStoreError.
    void setKey(const std::optional<std::string>& key, const std::string& account, const std::stop_token& stop = {}) {
        setNow(key, account, stop);
    }

    /// Removes the key; false where there is none. Unlike `setKey` with nothing, throws KeyStoreError where it stays.
    bool remove(const std::string& account, const std::stop_token& stop = {}) { return removeNow(account, stop); }

    /// What to say of a key that is locked.
    static constexpr const char* lockedSentence = "The keychain with your API key is locked. Unlock it and try again.";

private:
    [[nodiscard]] virtual KeyReading readNow(const std::string& account, const std::stop_token& stop) const = 0;
    virtual void setNow(const std::optional<std::string>& key, const std::string& account,
                        const std::stop_token& stop) = 0;
    virtual bool removeNow(const std::string& account, const std::stop_token& stop);
};

/// Keeps keys as long as it lives. Never throws; an empty key is stored as such.
class MemoryKeyStore final : public KeyStore {
private:
    [[nodiscard]] KeyReading readNow(const std::string& account, const std::stop_token& stop) const override;
    void setNow(const std::optional<std::string>& key, const std::string& account,
                const std::stop_token& stop) override;

    mutable std::mutex lock_;
    std::map<std::string, std::string> keys_;
};

} // namespace varnic
