#pragma once

#include <map>
#include <optional>
#include <string>

struct sd_bus_message;

/// The forms in which the desktop's portal answers.
namespace varnic::PortalMessages {

/// The texts among the entries of a dictionary of variants, which the message must have next. Nothing where it hasn't.
std::optional<std::map<std::string, std::string>> readTexts(sd_bus_message* message);

struct Response {
    bool isGranted = false;
    /// The results that are texts or paths.
    std::map<std::string, std::string> texts;
    /// The results that are Booleans.
    std::map<std::string, bool> flags;
    /// How the desktop calls the keys of the first shortcut; empty where it doesn't tell.
    std::string trigger;
};

/// The signal Response of a request; nothing where it has another form.
std::optional<Response> readResponse(sd_bus_message* message);

} // namespace varnic::PortalMessages
