#pragma once

#include <pipewire/pipewire.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace varnic {

/// A device or a program's stream. Ids are the server's, and are used again after a removal.
struct SoundNode {
    std::uint32_t id = 0;
    std::string mediaClass;
    std::string name;
    std::string description;
    std::uint32_t client = 0;
    int priority = 0;
    /// The rest is known of microphones and programs' streams only, and once `isJudged`.
    std::string program;
    bool isJudged = false;
    bool isRunning = false;
    /// The loopback or filter chain that it is part of, whose audio passes elsewhere again; or nothing.
    std::string group;
    bool isOwnPlayback = false;
    /// Whether what comes out of it, or goes into it, is what an output plays.
    bool isMonitor = false;

    /// The name for people.
    [[nodiscard]] const std::string& label() const { return description.empty() ? name : description; }
};

/// One channel's way into or out of a node.
struct SoundPort {
    std::uint32_t node = 0;
    bool isOutput = false;
    std::string channel;
};

struct SoundLink {
    std::uint32_t outputNode = 0;
    std::uint32_t inputNode = 0;
};

/// What the sound server has, followed through its registry. Lives and is called in the loop's thread, or with the loop
/// locked.
class SoundGraph {
public:
    /// `onChange` is called after each change.
    SoundGraph(pw_core* core, std::function<void()> onChange);
    SoundGraph(const SoundGraph&) = delete;
    SoundGraph& operator=(const SoundGraph&) = delete;
    ~SoundGraph();

    /// The microphones, the default one first, then the best of the others. Never what an output plays.
    [[nodiscard]] std::vector<const SoundNode*> microphones() const;
    /// The first of them; null where there is none.
    [[nodiscard]] const SoundNode* microphone() const;
    /// The outputs, the default one first, then the best of the others.
    [[nodiscard]] std::vector<const SoundNode*> outputs() const;
    /// The first of them; null where there is none.
    [[nodiscard]] const SoundNode* output() const;
    /// Whether there is a device or a program's stream at all.
    [[nodiscard]] bool hasSound() const;
    /// The streams of other programs that play.
    [[nodiscard]] std::vector<const SoundNode*> programs() const;

    [[nodiscard]] const std::map<std::uint32_t, SoundPort>& ports() const { return ports_; }

    /// The microphone that is linked into the node; null where none is.
    [[nodiscard]] const SoundNode* microphoneOf(std::uint32_t node) const;

    /// Whether a volume control has been told where the node's audio is to come from or go to.
    [[nodiscard]] bool isMoved(std::uint32_t node) const { return moved_.contains(node); }

    /// Whether the node is linked into an output.
    [[nodiscard]] bool reachesOutput(std::uint32_t node) const;
    /// Whether the node is linked into that one.
    [[nodiscard]] bool isLinked(std::uint32_t node, const SoundNode& into) const;

private:
    struct Bound;
    struct Events;

    void add(std::uint32_t id, const std::string& type, const spa_dict& properties);
    void addNode(std::uint32_t id, const spa_dict& properties);
    void remove(std::uint32_t id);
    void bind(std::uint32_t id, const char* type, std::uint32_t version, const void* events);
    void judge(std::uint32_t id, const pw_node_info& info);
    void judgeClient(std::uint32_t id, const pw_client_info& info);
    void setDefault(const std::string& key, const char* value);
    void setTarget(std::uint32_t node, const std::string& key, const char* value);
    [[nodiscard]] bool isMicrophone(const SoundNode& node) const;
    /// Devices of a kind, the default one first, then the best.
    [[nodiscard]] std::vector<const SoundNode*> devices(const char* mediaClass, const std::string& defaultName) const;

    pw_registry* registry_;
    spa_hook listener_{};
    std::function<void()> onChange_;
    std::map<std::uint32_t, SoundNode> nodes_;
    std::map<std::uint32_t, SoundPort> ports_;
    std::map<std::uint32_t, SoundLink> links_;
    /// Clients whose information has come, and whether they are this program.
    std::map<std::uint32_t, bool> clients_;
    std::map<std::uint32_t, std::unique_ptr<Bound>> bound_;
    /// Streams that the user has moved.
    std::set<std::uint32_t> moved_;
    std::string defaultSource_;
    std::string defaultSink_;
};

} // namespace varnic
