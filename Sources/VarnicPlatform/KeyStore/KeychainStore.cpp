#include "VarnicPlatform/KeyStore/KeychainStore.h"

#include "VarnicPlatform/KeyStore/CoreDumps.h"
#include "VarnicPlatform/KeyStore/KeyRingCall.h"

#include <libsecret/secret.h>

#include <memory>
#include <utility>

namespace varnic {

namespace {

const SecretSchema& schema() {
    static const SecretSchema schema{.name = "app.brevin.varnic.ApiKey",
                                     .flags = SECRET_SCHEMA_NONE,
                                     .attributes = {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                                    {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                                    {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
                                     .reserved = 0,
                                     .reserved1 = nullptr,
                                     .reserved2 = nullptr,
                                     .reserved3 = nullptr,
                                     .reserved4 = nullptr,
                                     .reserved5 = nullptr,
                                     .reserved6 = nullptr,
                                     .reserved7 = nullptr};
    return schema;
}

struct FreeItems {
    void operator()(GList* items) const { g_list_free_full(items, g_object_unref); }
};

using Items = std::unique_ptr<GList, FreeItems>;

/// Whether the first of the items is kept in a locked ring.
bool isFirstLocked(const Items& items) {
    return items && SECRET_IS_ITEM(items->data) && secret_item_get_locked(SECRET_ITEM(items->data)) == TRUE;
}

/// What is stored for the account. A search, since a look-up would ask the user to unlock the ring.
Items found(const std::string& service, const std::string& account, KeyRingCall& call) {
    return Items(secret_password_search_sync(&schema(), SECRET_SEARCH_NONE, call.cancellable(), call.receiver(),
                                             "service", service.c_str(), "account", account.c_str(), nullptr));
}

using Secret = std::unique_ptr<SecretValue, decltype(&secret_value_unref)>;

bool clear(const std::string& service, const std::string& account, KeyRingCall& call) {
    return secret_password_clear_sync(&schema(), call.cancellable(), call.receiver(), "service", service.c_str(),
                                      "account", account.c_str(), nullptr) == TRUE;
}

bool store(const std::string& service, const std::string& account, const std::string& key, KeyRingCall& call) {
    const std::string label = "Varnic: API key for " + account;
    return secret_password_store_sync(&schema(), SECRET_COLLECTION_DEFAULT, label.c_str(), key.c_str(),
                                      call.cancellable(), call.receiver(), "service", service.c_str(), "account",
                                      account.c_str(), nullptr) == TRUE;
}

KeyReading notRead(const KeyRingCall& call) {
    return {.state = call.state(), .key = std::nullopt, .problem = "The key can’t be read: " + call.message() + "."};
}

} // namespace

KeychainStore::KeychainStore(std::string service) : KeychainStore(std::move(service), Patience()) {}

KeychainStore::KeychainStore(std::string service, Patience patience)
    : service_(std::move(service)), patience_(patience) {}

KeyReading KeychainStore::readNow(const std::string& account, const std::stop_token& stop) const {
    KeyRingCall call(patience_.answer, stop);
    const Items items = found(service_, account, call);
    if (call.failed()) {
        return notRead(call);
    }
    if (!items) {
        return {};
    }
    if (isFirstLocked(items)) {
        return {.state = KeyState::locked, .key = std::nullopt, .problem = lockedSentence};
    }
    forbidCoreDumps();
    const Secret secret(
        secret_retrievable_retrieve_secret_sync(SECRET_RETRIEVABLE(items->data), call.cancellable(), call.receiver()),
        secret_value_unref);
    const gchar* text = secret ? secret_value_get_text(secret.get()) : nullptr;
    return text == nullptr ? notRead(call) : KeyReading::found(text);
}

void KeychainStore::setNow(const std::optional<std::string>& key, const std::string& account,
                           const std::stop_token& stop) {
    // A ring that doesn't even find keys is not waited for as one that asks the user is.
    const KeyReading before = readNow(account, stop);
    KeyRingCall call(patience_.user, stop);
    if (!key || key->empty()) {
        if (before.state == KeyState::found || before.state == KeyState::locked) {
            clear(service_, account, call);
        }
        return;
    }
    constexpr const char* beginning = "The key couldn’t be saved in the keychain: ";
    if (before.state == KeyState::noKeyRing) {
        throw KeyStoreError(std::string(beginning) + "No key ring is running", before.state);
    }
    if (before.state == KeyState::unanswered) {
        throw KeyStoreError(std::string(beginning) + "The key ring doesn’t answer", before.state);
    }
    forbidCoreDumps();
    // It takes the place of an older one, which a failure leaves.
    if (!store(service_, account, *key, call)) {
        throw KeyStoreError(beginning + call.message(), call.failed() ? call.state() : KeyState::failed);
    }
}

bool KeychainStore::removeNow(const std::string& account, const std::stop_token& stop) {
    KeyRingCall search(patience_.answer, stop);
    const bool isThere = found(service_, account, search) != nullptr;
    if (search.failed()) {
        throw KeyStoreError(search.message() + ", so nothing was removed.", search.state());
    }
    if (!isThere) {
        return false;
    }
    KeyRingCall call(patience_.user, stop);
    if (clear(service_, account, call)) {
        return true;
    }
    if (readNow(account, stop).state == KeyState::locked) {
        throw KeyStoreError("The keychain is locked, so nothing was removed.", KeyState::locked);
    }
    throw KeyStoreError(call.message() + ", so nothing was removed.", call.failed() ? call.state() : KeyState::failed);
}

} // namespace varnic
