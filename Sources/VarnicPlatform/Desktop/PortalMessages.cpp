#include "VarnicPlatform/Desktop/PortalMessages.h"

#include <systemd/sd-bus.h>

#include <cstdint>
#include <functional>
#include <string_view>

namespace varnic::PortalMessages {

namespace {

using Texts = std::map<std::string, std::string>;

/// Calls `value` for each entry of a dictionary of variants with the name and the signature of the value, which it
/// either reads as a whole or not at all, and then returns false. False where the message has another form.
bool readEntries(sd_bus_message* message, const std::function<bool(const char* name, std::string_view type)>& value) {
    if (sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "{sv}") <= 0) {
        return false;
    }
    while (sd_bus_message_enter_container(message, SD_BUS_TYPE_DICT_ENTRY, "sv") > 0) {
        const char* name = nullptr;
        const char* type = nullptr;
        if (sd_bus_message_read(message, "s", &name) <= 0 || sd_bus_message_peek_type(message, nullptr, &type) <= 0) {
            return false;
        }
        const std::string held = type;
        if (sd_bus_message_enter_container(message, SD_BUS_TYPE_VARIANT, held.c_str()) <= 0) {
            return false;
        }
        if (!value(name, held)) {
            sd_bus_message_skip(message, held.c_str());
        }
        sd_bus_message_exit_container(message);
        sd_bus_message_exit_container(message);
    }
    return sd_bus_message_exit_container(message) >= 0;
}

bool readText(sd_bus_message* message, const char* name, std::string_view type, Texts& texts) {
    const char* text = nullptr;
    if ((type != "s" && type != "o") || sd_bus_message_read_basic(message, type.front(), &text) <= 0) {
        return false;
    }
    texts.insert_or_assign(name, text);
    return true;
}

bool readFlag(sd_bus_message* message, const char* name, std::string_view type, std::map<std::string, bool>& flags) {
    int flag = 0;
    if (type != "b" || sd_bus_message_read_basic(message, 'b', &flag) <= 0) {
        return false;
    }
    flags.insert_or_assign(name, flag != 0);
    return true;
}

/// Reads the shortcuts that were bound, of which there is one.
void readShortcuts(sd_bus_message* message, std::string& trigger) {
    if (sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "(sa{sv})") <= 0) {
        return;
    }
    while (sd_bus_message_enter_container(message, SD_BUS_TYPE_STRUCT, "sa{sv}") > 0) {
        const char* id = nullptr;
        sd_bus_message_read(message, "s", &id);
        if (const auto texts = readTexts(message); texts && trigger.empty() && texts->contains("trigger_description")) {
            trigger = texts->at("trigger_description");
        }
        sd_bus_message_exit_container(message);
    }
    sd_bus_message_exit_container(message);
}

} // namespace

std::optional<Texts> readTexts(sd_bus_message* message) {
    Texts texts;
    const bool isRead = readEntries(
        message, [&](const char* name, std::string_view type) { return readText(message, name, type, texts); });
    return isRead ? std::optional(std::move(texts)) : std::nullopt;
}

std::optional<Response> readResponse(sd_bus_message* message) {
    Response response;
    std::uint32_t code = 0;
    if (sd_bus_message_read(message, "u", &code) <= 0) {
        return std::nullopt;
    }
    response.isGranted = code == 0;
    const bool isRead = readEntries(message, [&](const char* name, std::string_view type) {
        if (std::string_view(name) == "shortcuts" && type == "a(sa{sv})") {
            readShortcuts(message, response.trigger);
            return true;
        }
        return readText(message, name, type, response.texts) || readFlag(message, name, type, response.flags);
    });
    return isRead ? std::optional(std::move(response)) : std::nullopt;
}

} // namespace varnic::PortalMessages
