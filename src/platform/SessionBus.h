#pragma once
// The user's session bus, as the few calls the program makes on it need it: ask an app for its
// own Quit, ask the desktop for its restart dialog. The core reaches the bus only through this,
// so the window can hand in its own connection and tests a recording one.
#include <cstdint>
#include <string>
#include <vector>

// One argument of a call: only the kinds the program sends.
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
        std::string text; // the reply's values as text, or why the call failed
    };

    virtual ~SessionBus() = default;
    // Makes one method call and waits at most `timeout` seconds for its reply. Never starts a
    // program that is not running: a name nobody holds fails.
    [[nodiscard]] virtual Reply call(const BusCall& call, double timeout) const = 0;

    // Whether a program holds `name` on the bus now.
    [[nodiscard]] bool hasOwner(const std::string& name) const;

    // The session's own bus, reached through the desktop's command-line tools.
    [[nodiscard]] static const SessionBus& session();
};
