#include "VarnicCore/AISummariser/KeyStore.h"

namespace varnic {

bool KeyStore::remove(const std::string& account) {
    const bool isThere = key(account).has_value();
    setKey(std::nullopt, account);
    return isThere;
}

std::optional<std::string> MemoryKeyStore::key(const std::string& account) const {
    const std::scoped_lock guard(lock_);
    const auto found = keys_.find(account);
    return found == keys_.end() ? std::nullopt : std::optional(found->second);
}

void MemoryKeyStore::setKey(const std::optional<std::string>& key, const std::string& account) {
    const std::scoped_lock guard(lock_);
    if (key) {
        keys_.insert_or_assign(account, *key);
    } else {
        keys_.erase(account);
    }
}

} // namespace varnic
