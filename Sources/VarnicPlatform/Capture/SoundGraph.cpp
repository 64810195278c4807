#include "VarnicPlatform/Capture/SoundGraph.h"

#include "VarnicPlatform/Capture/PlaybackMarker.h"

#include <nlohmann/json.hpp>
#include <pipewire/extensions/metadata.h>

#include <algorithm>
#include <charconv>
#include <functional>
#include <string_view>
#include <unistd.h>

namespace varnic {

namespace {

std::string text(const spa_dict* properties, const char* key) {
    const char* value = properties == nullptr ? nullptr : spa_dict_lookup(properties, key);
    return value == nullptr ? "" : value;
}

int number(const spa_dict* properties, const char* key) {
    const std::string digits = text(properties, key);
    int value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

std::uint32_t idOf(const spa_dict* properties, const char* key) {
    return static_cast<std::uint32_t>(number(properties, key));
}

bool isProgram(const SoundNode& node) {
    return node.mediaClass == "Stream/Output/Audio";
}

/// A loopback from an output begins with one of these.
bool isListener(const SoundNode& node) {
    return node.mediaClass == "Stream/Input/Audio";
}

/// What PipeWire's PulseAudio server puts in place of an output where there is none; nobody hears it.
constexpr const char* dummyOutput = "auto_null";

/// "Audio/Source" and the more special kinds of it, "Audio/Duplex" for both.
bool isDevice(const SoundNode& node, std::string_view mediaClass) {
    if (node.name == dummyOutput) {
        return false;
    }
    return node.mediaClass.starts_with(mediaClass) || node.mediaClass == "Audio/Duplex";
}

/// The name under which PulseAudio, here or on another computer, offers what an output plays as if it were recorded.
bool isNamedMonitor(std::string_view name) {
    return name.ends_with(".monitor");
}

/// The process that speaks for a client, told by number and name together: numbers alone repeat in other sandboxes.
bool isThisProcess(const spa_dict* properties) {
    return number(properties, PW_KEY_APP_PROCESS_ID) == getpid() &&
           text(properties, PW_KEY_APP_PROCESS_BINARY) == pw_get_prgname();
}

} // namespace

/// An object of the server that is listened to.
struct SoundGraph::Bound {
    SoundGraph* graph;
    std::uint32_t id;
    pw_proxy* proxy;
    spa_hook listener{};

    Bound(SoundGraph* owner, std::uint32_t global, pw_proxy* object) : graph(owner), id(global), proxy(object) {}

    Bound(const Bound&) = delete;
    Bound& operator=(const Bound&) = delete;

    ~Bound() {
        spa_hook_remove(&listener);
        pw_proxy_destroy(proxy);
    }
};

/// The server's callbacks.
struct SoundGraph::Events {
    static constexpr pw_registry_events registry{
        .version = PW_VERSION_REGISTRY_EVENTS,
        .global =
            [](void* data, std::uint32_t id, std::uint32_t /*permissions*/, const char* type, std::uint32_t /*version*/,
               const spa_dict* properties) {
                if (properties != nullptr) {
                    static_cast<SoundGraph*>(data)->add(id, type, *properties);
                }
            },
        .global_remove = [](void* data, std::uint32_t id) { static_cast<SoundGraph*>(data)->remove(id); },
    };
    static constexpr pw_node_events node{
        .version = PW_VERSION_NODE_EVENTS,
        .info =
            [](void* data, const pw_node_info* info) {
                auto* bound = static_cast<Bound*>(data);
                bound->graph->judge(bound->id, *info);
            },
    };
    static constexpr pw_client_events client{
        .version = PW_VERSION_CLIENT_EVENTS,
        .info =
            [](void* data, const pw_client_info* info) {
                auto* bound = static_cast<Bound*>(data);
                bound->graph->judgeClient(bound->id, *info);
            },
    };
    static constexpr pw_metadata_events metadata{
        .version = PW_VERSION_METADATA_EVENTS,
        .property =
            [](void* data, std::uint32_t subject, const char* key, const char* /*type*/, const char* value) {
                SoundGraph* graph = static_cast<Bound*>(data)->graph;
                if (key != nullptr && subject != PW_ID_CORE) {
                    graph->setTarget(subject, key, value);
                } else if (key != nullptr && value != nullptr) {
                    graph->setDefault(key, value);
                }
                return 0;
            },
    };
};

SoundGraph::SoundGraph(pw_core* core, std::function<void()> onChange)
    : registry_(pw_core_get_registry(core, PW_VERSION_REGISTRY, 0)), onChange_(std::move(onChange)) {
    pw_registry_add_listener(registry_, &listener_, &Events::registry, this);
}

SoundGraph::~SoundGraph() {
    bound_.clear();
    spa_hook_remove(&listener_);
    pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
}

std::vector<const SoundNode*> SoundGraph::microphones() const {
    std::vector<const SoundNode*> found = devices("Audio/Source", defaultSource_);
    std::erase_if(found, [this](const SoundNode* node) { return !isMicrophone(*node); });
    return found;
}

const SoundNode* SoundGraph::microphone() const {
    const auto found = microphones();
    return found.empty() ? nullptr : found.front();
}

std::vector<const SoundNode*> SoundGraph::outputs() const {
    return devices("Audio/Sink", defaultSink_);
}

const SoundNode* SoundGraph::output() const {
    const auto found = outputs();
    return found.empty() ? nullptr : found.front();
}

bool SoundGraph::hasSound() const {
    return std::ranges::any_of(nodes_, [](const auto& entry) { return entry.second.mediaClass.contains("Audio"); });
}

std::vector<const SoundNode*> SoundGraph::programs() const {
    std::vector<const SoundNode*> found;
    for (const auto& [id, node] : nodes_) {
        const auto client = clients_.find(node.client);
        if (isProgram(node) && node.isJudged && client != clients_.end() && !client->second && node.group.empty() &&
            !node.isOwnPlayback) {
            found.push_back(&node);
        }
    }
    return found;
}

const SoundNode* SoundGraph::microphoneOf(std::uint32_t node) const {
    for (const auto& [id, link] : links_) {
        const auto from = nodes_.find(link.outputNode);
        if (link.inputNode == node && from != nodes_.end() && isMicrophone(from->second)) {
            return &from->second;
        }
    }
    return nullptr;
}

bool SoundGraph::reachesOutput(std::uint32_t node) const {
    return std::ranges::any_of(links_, [&](const auto& entry) {
        const auto to = nodes_.find(entry.second.inputNode);
        return entry.second.outputNode == node && to != nodes_.end() && isDevice(to->second, "Audio/Sink");
    });
}

bool SoundGraph::isLinked(std::uint32_t node, const SoundNode& into) const {
    return std::ranges::any_of(links_, [&](const auto& entry) {
        return entry.second.outputNode == node && entry.second.inputNode == into.id;
    });
}

void SoundGraph::add(std::uint32_t id, const std::string& type, const spa_dict& properties) {
    if (type == PW_TYPE_INTERFACE_Node) {
        addNode(id, properties);
    } else if (type == PW_TYPE_INTERFACE_Port) {
        ports_[id] = {.node = idOf(&properties, PW_KEY_NODE_ID),
                      .isOutput = text(&properties, PW_KEY_PORT_DIRECTION) == "out",
                      .channel = text(&properties, PW_KEY_AUDIO_CHANNEL)};
    } else if (type == PW_TYPE_INTERFACE_Link) {
        links_[id] = {.outputNode = idOf(&properties, PW_KEY_LINK_OUTPUT_NODE),
                      .inputNode = idOf(&properties, PW_KEY_LINK_INPUT_NODE)};
    } else if (type == PW_TYPE_INTERFACE_Metadata && text(&properties, PW_KEY_METADATA_NAME) == "default") {
        bind(id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, &Events::metadata);
    } else {
        return;
    }
    onChange_();
}

void SoundGraph::addNode(std::uint32_t id, const spa_dict& properties) {
    SoundNode& node = nodes_[id];
    node = {.id = id,
            .mediaClass = text(&properties, PW_KEY_MEDIA_CLASS),
            .name = text(&properties, PW_KEY_NODE_NAME),
            .description = text(&properties, PW_KEY_NODE_DESCRIPTION),
            .client = idOf(&properties, PW_KEY_CLIENT_ID),
            .priority = number(&properties, PW_KEY_PRIORITY_SESSION)};
    if (isProgram(node)) {
        bind(id, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, &Events::node);
        if (!bound_.contains(node.client)) {
            bind(node.client, PW_TYPE_INTERFACE_Client, PW_VERSION_CLIENT, &Events::client);
        }
    } else if (isDevice(node, "Audio/Source") || isListener(node)) {
        bind(id, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, &Events::node);
    }
}

void SoundGraph::remove(std::uint32_t id) {
    nodes_.erase(id);
    ports_.erase(id);
    links_.erase(id);
    clients_.erase(id);
    bound_.erase(id);
    moved_.erase(id);
    onChange_();
}

void SoundGraph::bind(std::uint32_t id, const char* type, std::uint32_t version, const void* events) {
    auto* proxy = static_cast<pw_proxy*>(pw_registry_bind(registry_, id, type, version, 0));
    if (proxy == nullptr) {
        return;
    }
    auto bound = std::make_unique<Bound>(this, id, proxy);
    pw_proxy_add_object_listener(proxy, &bound->listener, events, bound.get());
    bound_[id] = std::move(bound);
}

void SoundGraph::judge(std::uint32_t id, const pw_node_info& info) {
    const auto found = nodes_.find(id);
    if (found == nodes_.end()) {
        return;
    }
    SoundNode& node = found->second;
    node.isRunning = info.state == PW_NODE_STATE_RUNNING;
    if ((info.change_mask & PW_NODE_CHANGE_MASK_PROPS) != 0) {
        node.program = text(info.props, PW_KEY_APP_NAME);
        node.group = text(info.props, PW_KEY_NODE_LINK_GROUP);
        node.isOwnPlayback = text(info.props, playbackMarker) == "true";
        node.isMonitor = isNamedMonitor(node.name) || text(info.props, PW_KEY_DEVICE_CLASS) == "monitor" ||
                         text(info.props, PW_KEY_STREAM_CAPTURE_SINK) == "true";
        node.isJudged = true;
    }
    onChange_();
}

void SoundGraph::judgeClient(std::uint32_t id, const pw_client_info& info) {
    if (info.props != nullptr) {
        clients_[id] = isThisProcess(info.props);
        onChange_();
    }
}

void SoundGraph::setDefault(const std::string& key, const char* value) {
    const auto parsed = nlohmann::json::parse(value, nullptr, false);
    if (!parsed.is_object() || !parsed.contains("name") || !parsed["name"].is_string()) {
        return;
    }
    if (key == "default.audio.source") {
        defaultSource_ = parsed["name"];
    } else if (key == "default.audio.sink") {
        defaultSink_ = parsed["name"];
    }
    onChange_();
}

void SoundGraph::setTarget(std::uint32_t node, const std::string& key, const char* value) {
    if (key != "target.object" && key != "target.node") {
        return;
    }
    // With -1 the session manager notes that the stream is on the default device, as it wants to go on with that.
    if (value != nullptr && std::string_view(value) != "-1") {
        moved_.insert(node);
    } else if (key == "target.object") {
        moved_.erase(node);
    }
}

bool SoundGraph::isMicrophone(const SoundNode& node) const {
    if (!isDevice(node, "Audio/Source") || !node.isJudged || node.isMonitor) {
        return false;
    }
    // A chain that listens to an output alone passes that on; one that removes echo listens to a microphone too.
    const auto listens = [&node](bool toOutput) {
        return [&node, toOutput](const auto& entry) {
            const SoundNode& other = entry.second;
            return isListener(other) && !node.group.empty() && other.group == node.group && other.isMonitor == toOutput;
        };
    };
    return std::ranges::none_of(nodes_, listens(true)) || std::ranges::any_of(nodes_, listens(false));
}

std::vector<const SoundNode*> SoundGraph::devices(const char* mediaClass, const std::string& defaultName) const {
    std::vector<const SoundNode*> found;
    for (const auto& [id, node] : nodes_) {
        if (isDevice(node, mediaClass)) {
            found.push_back(&node);
        }
    }
    std::ranges::stable_sort(found, std::greater(), [&defaultName](const SoundNode* node) {
        return std::pair(node->name == defaultName, node->priority);
    });
    return found;
}

} // namespace varnic
