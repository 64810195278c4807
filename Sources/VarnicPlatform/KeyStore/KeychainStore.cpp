#include "VarnicPlatform/KeyStore/KeychainStore.h"

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

    GError** receiver() { return &error_; }

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
using Secret = std::unique_ptr<SecretValue, decltype(&secret_value_unref)>;

} // namespace

KeychainStore::KeychainStore(std::string service) : service_(std::move(service)) {}

std::optional<std::string> KeychainStore::key(const std::string& account) const {
    Failure failure;
    // A search, since a look-up would ask the user to unlock the ring.
    const Items items(secret_password_search_sync(&schema(), SECRET_SEARCH_NONE, nullptr, failure.receiver(), "service",
                                                  service_.c_str(), "account", account.c_str(), nullptr));
    if (!items) {
        return std::nullopt;
    }
    const Secret secret(
        secret_retrievable_retrieve_secret_sync(SECRET_RETRIEVABLE(items->data), nullptr, failure.receiver()),
        secret_value_unref);
    const gchar* text = secret ? secret_value_get_text(secret.get()) : nullptr;
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

void KeychainStore::setKey(const std::optional<std::string>& key, const std::string& account) {
    Failure ignored;
    secret_password_clear_sync(&schema(), nullptr, ignored.receiver(), "service", service_.c_str(), "account",
                               account.c_str(), nullptr);
    if (!key || key->empty()) {
        return;
    }
    Failure failure;
    const std::string label = "Varnic: API key for " + account;
    if (secret_password_store_sync(&schema(), SECRET_COLLECTION_DEFAULT, label.c_str(), key->c_str(), nullptr,
                                   failure.receiver(), "service", service_.c_str(), "account", account.c_str(),
                                   nullptr) == FALSE) {
        throw KeyStoreError("The key couldn’t be saved in the keychain: " + failure.message());
    }
}

} // namespace varnic
