#pragma once

#include "VarnicCore/AISummariser/KeyStore.h"

#include <string>

namespace varnic {

/// Keeps keys in the user's key ring, through the Secret Service. Has no state of its own: every call is one to the
/// service, which may block while the service asks the user. A process that has held a key leaves no core dump.
class KeychainStore final : public KeyStore {
public:
    /// The service under which the program keeps its keys.
    static constexpr const char* defaultService = "app.brevin.varnic.ai";

    explicit KeychainStore(std::string service = defaultService);

    /// Nothing also where the ring is locked or there is none; never asks the user to unlock it.
    [[nodiscard]] std::optional<std::string> key(const std::string& account) const override;

    /// An older key is removed first; an empty one stores nothing. Throws KeyStoreError, also when the user declines to
    /// unlock the ring.
    void setKey(const std::optional<std::string>& key, const std::string& account) override;

    /// May have the service ask the user to unlock the ring.
    bool remove(const std::string& account) override;
    [[nodiscard]] bool isLocked(const std::string& account) const override;

private:
    std::string service_;
};

} // namespace varnic
