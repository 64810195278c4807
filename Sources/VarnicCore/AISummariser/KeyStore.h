#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>

namespace varnic {

/// A key could not be stored; `what()` is the user's sentence and never holds the key.
class KeyStoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Where API keys are kept, one an account. Any thread.
class KeyStore {
public:
    KeyStore() = default;
    KeyStore(const KeyStore&) = delete;
    KeyStore& operator=(const KeyStore&) = delete;
    virtual ~KeyStore() = default;

    /// The stored key; nothing where there is none or it cannot be read.
    [[nodiscard]] virtual std::optional<std::string> key(const std::string& account) const = 0;

    /// Stores the key in place of an older one; nothing removes it. Throws KeyStoreError.
    virtual void setKey(const std::optional<std::string>& key, const std::string& account) = 0;

    /// Removes the key; false where there is none. Unlike `setKey` with nothing, throws KeyStoreError where it stays.
    virtual bool remove(const std::string& account);

    /// Whether there is a key that cannot be read before the user unlocks where it is kept.
    [[nodiscard]] virtual bool isLocked(const std::string& /*account*/) const { return false; }

    /// What to say of a key that is locked.
    static constexpr const char* lockedSentence = "The keychain with your API key is locked. Unlock it and try again.";
};

/// Keeps keys as long as it lives.
class MemoryKeyStore final : public KeyStore {
public:
    [[nodiscard]] std::optional<std::string> key(const std::string& account) const override;
    /// Never throws; an empty key is stored as such.
    void setKey(const std::optional<std::string>& key, const std::string& account) override;

private:
    mutable std::mutex lock_;
    std::map<std::string, std::string> keys_;
};

} // namespace varnic
