#include "VarnicCore/AISummariser/KeyStore.h"

namespace varnic {

bool KeyStore::removeNow(const std::string& account, const std::stop_token& stop) {
    const bool isThere = readNow(account, stop).key.has_value();
    setNow(std::nullopt, account, stop);
    return isThere;
}

KeyReading MemoryKeyStore::readNow(const std::string& account, const std::stop_token& /*stop*/) const {
    const std::scoped_lock guard(lock_);
    const auto found = keys_.find(account);
    return found == keys_.end() ? KeyReading() : KeyReading::found(found->second);
}

void MemoryKeyStore::setNow(const std::optional<std::string>& key, const std::string& account,
                            const std::stop_token& /*stop*/) {
    const std::scoped_lock guard(lock_);
    if (key) {
        keys_.insert_or_assign(account, *key);
    } else {
        keys_.erase(account);
    }
}

} // namespace varnic
