#pragma once
// Made-up processes, apps and a session bus for the actions' tests: every signal, request and
// call is written down, and processes end when they are told to.
#include "advice/Actions.h"

#include <csignal>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace fakes {

inline const TimePoint t0 = Clock::from_time_t(1'800'000'000);
inline TimePoint at(double seconds) { return addSeconds(t0, seconds); }

class Processes final : public ProcessControl {
public:
    std::map<int32_t, TimePoint> running;        // what runs at each pid now
    std::map<int32_t, std::set<int>> endsOn;     // signals each process ends on
    std::map<int32_t, std::string> paths;
    std::function<void(int32_t pid, int reads)> onRead; // called after each start-time read
    mutable std::vector<std::pair<int32_t, int>> sent;
    mutable std::map<int32_t, int> reads;
    mutable int holds = 0;

    void start(int32_t pid, double at, std::set<int> endsOnSignals = {SIGTERM, SIGINT, SIGKILL}) {
        running[pid] = fakes::at(at);
        endsOn[pid] = std::move(endsOnSignals);
    }
    // The process at `pid` ends, and another one starts there.
    void reuse(int32_t pid) const { const_cast<Processes*>(this)->running[pid] = fakes::at(999'999); }
    void end(int32_t pid) const { const_cast<Processes*>(this)->running.erase(pid); }
    std::vector<int> signalsTo(int32_t pid) const {
        std::vector<int> out;
        for (const auto& [p, s] : sent)
            if (p == pid) out.push_back(s);
        return out;
    }

    std::optional<TimePoint> startTime(int32_t pid) const override {
        auto it = running.find(pid);
        std::optional<TimePoint> start = it == running.end() ? std::nullopt : std::optional(it->second);
        const int n = ++reads[pid];
        if (onRead) onRead(pid, n);
        return start;
    }

    class FakeHold final : public Hold {
    public:
        FakeHold(const Processes& owner, int32_t pid, TimePoint start) : owner(owner), pid(pid), start(start) {}
        // Like a pidfd: the signal reaches the process that was held, or nothing.
        bool signal(int number) override {
            auto it = owner.running.find(pid);
            if (it == owner.running.end() || it->second != start) return false;
            owner.sent.emplace_back(pid, number);
            auto ends = owner.endsOn.find(pid);
            if (ends != owner.endsOn.end() && ends->second.contains(number)) owner.end(pid);
            return true;
        }

    private:
        const Processes& owner;
        int32_t pid;
        TimePoint start;
    };

    std::unique_ptr<Hold> hold(int32_t pid) const override {
        ++holds;
        auto it = running.find(pid);
        if (it == running.end()) return nullptr;
        return std::make_unique<FakeHold>(*this, pid, it->second);
    }
    std::string path(int32_t pid) const override {
        auto it = paths.find(pid);
        return it == paths.end() ? "" : it->second;
    }
};

class Apps final : public AppControl {
public:
    bool action = false; // the app answers its Quit action
    int windows = 0;     // windows found for its processes
    std::function<void()> onAsk; // what the app does when asked either way
    std::optional<std::string> openProblem;
    std::function<void()> onOpen;
    mutable int actionsAsked = 0;
    mutable std::vector<std::set<int32_t>> windowsAsked;
    mutable std::vector<std::pair<std::string, std::vector<std::string>>> opened;

    bool quitAction(const std::optional<std::string>&) const override {
        ++actionsAsked;
        if (action && onAsk) onAsk();
        return action;
    }
    int closeWindows(const std::set<int32_t>& pids) const override {
        windowsAsked.push_back(pids);
        if (windows > 0 && onAsk) onAsk();
        return windows;
    }
    std::optional<std::string> open(const std::string& entryPath, const std::vector<std::string>& arguments) const override {
        opened.emplace_back(entryPath, arguments);
        if (onOpen) onOpen();
        return openProblem;
    }
};

class Bus final : public SessionBus {
public:
    std::set<std::string> owners;
    std::set<std::string> refusing; // held, but their calls fail
    bool present = true;           // false: there is no session bus at all
    mutable std::vector<BusCall> calls;

    Reply call(const BusCall& c, double) const override {
        calls.push_back(c);
        if (!present) return {false, "There is no session bus.", "", {}};
        if (c.method == "NameHasOwner")
            return {true, "", "b", {BusValue::boolean(owners.contains(c.args.at(0).text))}};
        if (!owners.contains(c.service)) return {false, "Unknown name", "", {}};
        if (refusing.contains(c.service)) return {false, "Access denied", "", {}};
        return {true, "", "", {}};
    }
    std::vector<std::string> methodsCalled() const {
        std::vector<std::string> out;
        for (const auto& c : calls)
            if (c.method != "NameHasOwner") out.push_back(c.service + "." + c.method);
        return out;
    }
};

// A context over the fakes whose waits take no time but are added up.
struct World {
    Processes processes;
    Apps apps;
    Bus bus;
    double waited = 0;
    std::function<void(double)> onPause;

    Actions::Context context() {
        Actions::Context c;
        c.processes = &processes;
        c.apps = &apps;
        c.bus = &bus;
        c.tables.quitByInterrupt = {"google-chrome"};
        c.tables.restartDialogs = {
            {"GNOME", {"org.gnome.SessionManager", "/org/gnome/SessionManager", "org.gnome.SessionManager", "Reboot", {}}},
            {"KDE", {"org.kde.LogoutPrompt", "/LogoutPrompt", "org.kde.LogoutPrompt", "promptReboot", {}}}};
        c.pause = [this](double s) {
            waited += s;
            if (onPause) onPause(s);
        };
        return c;
    }
};

} // namespace fakes
