#pragma once

#include "VarnicCore/AISummariser/KeyStore.h"

#include <chrono>
#include <string>

namespace varnic {

/// Keeps keys in the user's key ring, through the Secret Service. Has no state of its own: every call is one to the
/// service. A process that has held a key leaves no core dump.
class KeychainStore final : public KeyStore {
public:
    /// The service under which the program keeps its keys.
    static constexpr const char* defaultService = "app.brevin.varnic.ai";

    /// What the key ring may take.
    struct Patience {
        /// Where it has only to answer.
        std::chrono::milliseconds answer = std::chrono::seconds(5);
        /// Where it may ask the user, who may have to look for a password.
        std::chrono::milliseconds user = std::chrono::minutes(3);
    };

    explicit KeychainStore(std::string service = defaultService);
    KeychainStore(std::string service, Patience patience);

private:
    [[nodiscard]] KeyReading readNow(const std::string& account, const std::stop_token& stop) const override;

    /// An empty key stores nothing. Throws also when the user declines to unlock the ring.
    void setNow(const std::optional<std::string>& key, const std::string& account,
                const std::stop_token& stop) override;

    /// May have the service ask the user to unlock the ring.
    bool removeNow(const std::string& account, const std::stop_token& stop) override;

    std::string service_;
    Patience patience_;
};

} // namespace varnic
