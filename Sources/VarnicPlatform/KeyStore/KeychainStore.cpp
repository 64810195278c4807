#include "VarnicPlatform/KeyStore/KeychainStore.h"

#include "VarnicPlatform/KeyStore/CoreDumps.h"

#include <gio/gio.h>
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

/// Receives an error of GLib's.
class Failure {
public:
    Failure() = default;
    Failure(const Failure&) = delete;
    Failure& operator=(const Failure&) = delete;

    ~Failure() { g_clear_error(&error_); }

    GError** receiver() {
        g_clear_error(&error_);
        return &error_;
    }

    [[nodiscard]] bool happened() const { return error_ != nullptr; }

    /// The message without the bus's own words in front.
    std::string message() {
        if (error_ == nullptr) {
            return "No reason was given";
        }
        if (g_error_matches(error_, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) == TRUE) {
            return "No key ring is running";
        }
        g_dbus_error_strip_remote_error(error_);
        return error_->message;
    }

private:
    GError* error_ = nullptr;
};

struct FreeItems {
    void operator()(GList* items) const { g_list_free_full(items, g_object_unref); }
};

using Items = std::unique_ptr<GList, FreeItems>;

/// Whether the first of the items is kept in a locked ring.
bool isLocked(const Items& items) {
    return items && SECRET_IS_ITEM(items->data) && secret_item_get_locked(SECRET_ITEM(items->data)) == TRUE;
}

/// What is stored for the account. A search, since a look-up would ask the user to unlock the ring.
Items found(const std::string& service, const std::string& account, GError** error) {
    return Items(secret_password_search_sync(&schema(), SECRET_SEARCH_NONE, nullptr, error, "service", service.c_str(),
                                             "account", account.c_str(), nullptr));
}

using Secret = std::unique_ptr<SecretValue, decltype(&secret_value_unref)>;

bool clear(const std::string& service, const std::string& account, GError** error) {
    return secret_password_clear_sync(&schema(), nullptr, error, "service", service.c_str(), "account", account.c_str(),
                                      nullptr) == TRUE;
}

} // namespace

KeychainStore::KeychainStore(std::string service) : service_(std::move(service)) {}

std::optional<std::string> KeychainStore::key(const std::string& account) const {
    Failure failure;
    const Items items = found(service_, account, failure.receiver());
    if (!items) {
        return std::nullopt;
    }
    forbidCoreDumps();
    const Secret secret(
        secret_retrievable_retrieve_secret_sync(SECRET_RETRIEVABLE(items->data), nullptr, failure.receiver()),
        secret_value_unref);
    const gchar* text = secret ? secret_value_get_text(secret.get()) : nullptr;
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

void KeychainStore::setKey(const std::optional<std::string>& key, const std::string& account) {
    Failure ignored;
    clear(service_, account, ignored.receiver());
    if (!key || key->empty()) {
        return;
    }
    forbidCoreDumps();
    Failure failure;
    const std::string label = "Varnic: API key for " + account;
    if (secret_password_store_sync(&schema(), SECRET_COLLECTION_DEFAULT, label.c_str(), key->c_str(), nullptr,
                                   failure.receiver(), "service", service_.c_str(), "account", account.c_str(),
                                   nullptr) == FALSE) {
        throw KeyStoreError("The key couldn’t be saved in the keychain: " + failure.message());
    }
}

bool KeychainStore::remove(const std::string& account) {
    Failure failure;
    const bool isThere = found(service_, account, failure.receiver()) != nullptr;
    if (isThere && clear(service_, account, failure.receiver())) {
        return true;
    }
    if (isLocked(account)) {
        throw KeyStoreError("The keychain is locked, so nothing was removed.");
    }
    if (isThere || failure.happened()) {
        throw KeyStoreError(failure.message() + ", so nothing was removed.");
    }
    return false;
}

bool KeychainStore::isLocked(const std::string& account) const {
    Failure ignored;
    return varnic::isLocked(found(service_, account, ignored.receiver()));
}

} // namespace varnic
