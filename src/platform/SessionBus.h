#pragma once
// The user's session bus, as the few calls the program makes on it need it: ask an app for its
// own Quit, ask the desktop for its restart dialog. The core reaches the bus only through this,
// so tests can hand in a recording one.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// One value of a call or a reply: only the kinds the program sends and reads.
struct BusValue {
    enum class Kind { string, boolean, emptyArray, emptyDict };
    Kind kind = Kind::string;
    std::string text;      // string: the value; emptyArray, emptyDict: the element signature ("v", "sv")
    bool flag = false;     // boolean

    [[nodiscard]] static BusValue string(std::string s) { return {Kind::string, std::move(s), false}; }
    [[nodiscard]] static BusValue boolean(bool b) { return {Kind::boolean, {}, b}; }
    [[nodiscard]] static BusValue emptyArray(std::string element) { return {Kind::emptyArray, std::move(element), false}; }
    [[nodiscard]] static BusValue emptyDict(std::string entry) { return {Kind::emptyDict, std::move(entry), false}; }
    // The D-Bus type signature of the value: "s", "b", "av", "a{sv}".
    [[nodiscard]] std::string signature() const;
    friend bool operator==(const BusValue&, const BusValue&) = default;
};

struct BusCall {
    std::string service;   // the bus name, e.g. "org.gnome.SessionManager"
    std::string path;      // the object path
    std::string interface;
    std::string method;
    std::vector<BusValue> args;
    friend bool operator==(const BusCall&, const BusCall&) = default;
};

class SessionBus {
public:
    struct Reply {
        bool ok = false;
        std::string error;            // why the call failed; empty when it did not
        std::string signature;        // of the reply's values, "" for none
        std::vector<BusValue> values; // the reply's strings and booleans, in order; other kinds are not read
    };

    virtual ~SessionBus() = default;
    // Makes one method call and waits at most `timeout` seconds for its reply, connecting
    // included. Never starts a program that is not running: a name nobody holds fails.
    [[nodiscard]] virtual Reply call(const BusCall& call, double timeout) const = 0;

    // Whether a program holds `name` on the bus now.
    [[nodiscard]] bool hasOwner(const std::string& name) const;

    // The answer of a call that gives one boolean; absent when it failed or gave anything else.
    [[nodiscard]] static std::optional<bool> flag(const Reply& reply);

    // The session's own bus, as this process's environment names it.
    [[nodiscard]] static const SessionBus& session();
};
