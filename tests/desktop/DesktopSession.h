#pragma once
// A desktop session of a test's own: an X server (Xvfb) on a free display, a session bus, a
// generated home folder, and the program started into it as a person's desktop would start
// it. The test's own connection to the bus serves the notification server and the tray
// watcher and makes the calls, so what it sends reaches the program in the order it was sent.
#include "FakeDesktop.h"
#include "support/PrivateServers.h"
#include "support/TempTree.h"

#include <QDBusConnection>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

// One run of the program.
class Program {
public:
    Program(const std::string& exe, const std::vector<std::string>& args, const std::map<std::string, std::string>& env,
            const std::string& output);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    [[nodiscard]] bool started() const { return pid > 0; }
    // The exit status once it ended within `seconds` (the event loop runs meanwhile); -1 when
    // it ended by a signal.
    [[nodiscard]] std::optional<int> waitExit(double seconds);
    void signal(int sig) const;
    pid_t pid = -1;

private:
    std::optional<int> status;
};

class DesktopSession {
public:
    // `home`: the home folder to use, a fresh one when empty.
    explicit DesktopSession(std::string home = {});
    ~DesktopSession();

    // Empty when the session is up; otherwise why not, for a skip.
    [[nodiscard]] const std::string& missing() const { return why; }

    [[nodiscard]] const std::string& home() const { return homeDir; }
    [[nodiscard]] std::string log() const; // the program's log so far, and what it printed
    [[nodiscard]] std::map<std::string, std::string> environment() const;
    std::unique_ptr<Program> start(const std::vector<std::string>& args = {}, const std::string& exe = SORRELIN_EXE,
                                   std::map<std::string, std::string> extra = {});

    bool serveNotifications(QStringList caps = {QStringLiteral("actions"), QStringLiteral("body")});
    bool serveTray();

    // Visible top-level windows titled exactly `title`, as the X server lists them.
    [[nodiscard]] int visibleWindows(const std::string& title) const;
    // Asks every top-level window of that title to close, as a click on its close button does;
    // how many it asked (none when the search failed, as it can while windows come and go).
    int closeWindows(const std::string& title) const;
    // A picture of the whole screen, for a person to look at.
    void screenshot(const std::string& name) const;

    // The program's state over the bus; empty when it does not answer.
    [[nodiscard]] QString tab();
    [[nodiscard]] std::optional<bool> windowShown();
    // ActivateAction on the program; the error name, empty on success.
    QString activateAction(const QString& action, const QVariantList& parameter = {});

    QDBusConnection bus{QString()};
    FakeNotificationServer notifications;
    FakeTrayWatcher tray;

private:
    std::string why;
    TempTree scratch;
    std::string homeDir;
    std::unique_ptr<PrivateDisplay> screen;
    std::string display;
    std::unique_ptr<PrivateBus> sessionBus;
    std::vector<pid_t> helpers;
};
