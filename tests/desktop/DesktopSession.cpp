#include "DesktopSession.h"

#include "app/BusReply.h"
#include "support/RunProgram.h"

#include <QDBusMessage>
#include <QDBusReply>

#include <xcb/xcb.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

std::atomic<int> connections{0};

std::vector<char*> pointers(std::vector<std::string>& strings) {
    std::vector<char*> out;
    for (auto& s : strings) out.push_back(s.data());
    out.push_back(nullptr);
    return out;
}

pid_t spawn(const std::string& exe, std::vector<std::string> argv, const std::map<std::string, std::string>& env,
            const std::string& output, int stdoutTo = -1) {
    std::map<std::string, std::string> merged;
    for (char** e = environ; *e; ++e) {
        const std::string kv = *e;
        const auto eq = kv.find('=');
        if (eq != std::string::npos) merged[kv.substr(0, eq)] = kv.substr(eq + 1);
    }
    for (const auto& [k, v] : env) {
        if (v.empty()) merged.erase(k);
        else merged[k] = v;
    }
    std::vector<std::string> envStrings;
    for (const auto& [k, v] : merged) envStrings.push_back(k + "=" + v);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (stdoutTo >= 0) posix_spawn_file_actions_adddup2(&actions, stdoutTo, STDOUT_FILENO);
    else posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    auto args = pointers(argv);
    auto envp = pointers(envStrings);
    pid_t pid = -1;
    if (posix_spawnp(&pid, exe.c_str(), &actions, nullptr, args.data(), envp.data()) != 0) pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    return pid;
}

void stop(pid_t pid) {
    if (pid <= 0) return;
    kill(pid, SIGTERM);
    for (int i = 0; i < 200; ++i) {
        if (waitpid(pid, nullptr, WNOHANG) == pid) return;
        usleep(10'000);
    }
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
}

} // namespace

Program::Program(const std::string& exe, const std::vector<std::string>& args, const std::map<std::string, std::string>& env,
                 const std::string& output) {
    std::vector<std::string> argv{exe};
    argv.insert(argv.end(), args.begin(), args.end());
    pid = spawn(exe, argv, env, output);
}

Program::~Program() {
    if (pid > 0 && !status) stop(pid);
}

std::optional<int> Program::waitExit(double seconds) {
    if (status || pid <= 0) return status;
    (void)waitFor([&] {
        int raw = 0;
        if (waitpid(pid, &raw, WNOHANG) != pid) return false;
        status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
        return true;
    }, seconds);
    return status;
}

void Program::signal(int sig) const {
    if (pid > 0) kill(pid, sig);
}

DesktopSession::DesktopSession(std::string home) : homeDir(home.empty() ? scratch.dir("home") : std::move(home)) {
    if (access("/usr/bin/Xvfb", X_OK) != 0) {
        why = "Xvfb is not installed";
        return;
    }
    screen = std::make_unique<PrivateDisplay>(std::nullopt, std::string(), "1600x1000x24");
    if (screen->name.empty()) {
        why = "Xvfb did not start";
        return;
    }
    display = screen->name;
    sessionBus = std::make_unique<PrivateBus>();
    if (sessionBus->address.empty()) {
        why = "dbus-daemon is not installed";
        return;
    }
    bus = QDBusConnection::connectToBus(QString::fromStdString(sessionBus->address), QStringLiteral("session-%1").arg(connections++));
    if (!bus.isConnected()) why = "the session bus refused the test";
    scratch.dir("run");
    chmod(scratch.path("run").c_str(), 0700);
}

DesktopSession::~DesktopSession() {
    for (pid_t p : helpers) stop(p);
    if (bus.isConnected()) QDBusConnection::disconnectFromBus(bus.name());
    sessionBus.reset();
    screen.reset();
}

std::string DesktopSession::log() const {
    std::ifstream in(scratch.path("log"));
    std::ifstream out(scratch.path("output"));
    std::stringstream s;
    s << in.rdbuf() << "--- what the program printed ---\n" << out.rdbuf();
    return s.str();
}

std::map<std::string, std::string> DesktopSession::environment() const {
    return {
        {"HOME", homeDir},
        {"XDG_CONFIG_HOME", homeDir + "/.config"},
        {"XDG_DATA_HOME", homeDir + "/.local/share"},
        {"XDG_CACHE_HOME", homeDir + "/.cache"},
        {"XDG_STATE_HOME", homeDir + "/.local/state"},
        {"XDG_RUNTIME_DIR", scratch.path("run")},
        {"DISPLAY", display},
        {"DBUS_SESSION_BUS_ADDRESS", sessionBus ? sessionBus->address : std::string()},
        {"FENNELBOX_LOG", scratch.path("log")},
        // Nothing of the machine's own desktop: this session is the whole world.
        {"SORRELIN_SUPPORT", ""},
        {"WAYLAND_DISPLAY", ""},
        {"QT_QPA_PLATFORM", ""},
        {"XDG_CURRENT_DESKTOP", ""},
        {"XDG_ACTIVATION_TOKEN", ""},
        {"DESKTOP_STARTUP_ID", ""},
    };
}

std::unique_ptr<Program> DesktopSession::start(const std::vector<std::string>& args, const std::string& exe,
                                               std::map<std::string, std::string> extra) {
    auto env = environment();
    for (auto& [k, v] : extra) env[k] = v;
    return std::make_unique<Program>(exe, args, env, scratch.path("output"));
}

bool DesktopSession::serveNotifications(QStringList caps) {
    notifications.caps = std::move(caps);
    return notifications.serveOn(bus);
}

bool DesktopSession::serveTray() { return tray.serveOn(bus); }

int DesktopSession::visibleWindows(const std::string& title) const {
    auto env = environment();
    const ProgramRun r = runProgram("/usr/bin/xdotool", {"search", "--onlyvisible", "--name", "^" + title + "$"}, env, 30);
    int n = 0;
    std::istringstream lines(r.out);
    for (std::string line; std::getline(lines, line);) n += !line.empty();
    return n;
}

int DesktopSession::closeWindows(const std::string& title) const {
    auto env = environment();
    const ProgramRun r = runProgram("/usr/bin/xdotool", {"search", "--onlyvisible", "--name", "^" + title + "$"}, env, 30);
    xcb_connection_t* x = xcb_connect(display.c_str(), nullptr);
    if (xcb_connection_has_error(x)) {
        xcb_disconnect(x);
        return 0;
    }
    auto atom = [&](const char* name) {
        xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(x, xcb_intern_atom(x, 0, uint16_t(std::strlen(name)), name), nullptr);
        const xcb_atom_t a = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
        std::free(reply);
        return a;
    };
    const xcb_atom_t protocols = atom("WM_PROTOCOLS");
    const xcb_atom_t deleteWindow = atom("WM_DELETE_WINDOW");
    int sent = 0;
    std::istringstream lines(r.out);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty()) continue;
        ++sent;
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = xcb_window_t(std::stoul(line));
        event.type = protocols;
        event.data.data32[0] = deleteWindow;
        event.data.data32[1] = XCB_CURRENT_TIME;
        xcb_send_event(x, 0, event.window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&event));
    }
    xcb_flush(x);
    xcb_disconnect(x);
    return sent;
}

void DesktopSession::screenshot(const std::string& name) const {
    if (access("/usr/bin/import", X_OK) != 0) return;
    const std::string folder = SORRELIN_PICTURES;
    runProgram("/usr/bin/mkdir", {"-p", folder}, {}, 30);
    runProgram("/usr/bin/import", {"-window", "root", folder + "/" + name + ".png"}, environment(), 60);
}

namespace {

// A property of the program's State interface. The call lets the test's own services answer
// while it waits: the program may be calling them at the same time.
QVariant stateProperty(QDBusConnection& bus, const QString& name) {
    QDBusMessage get = QDBusMessage::createMethodCall(QStringLiteral("app.sorrelin.Sorrelin"), QStringLiteral("/app/sorrelin/Sorrelin"),
                                                      QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << QStringLiteral("app.sorrelin.Sorrelin.State") << name;
    const QDBusMessage reply = BusReply::await(bus, get, 10000);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return {};
    return reply.arguments()[0].value<QDBusVariant>().variant();
}

} // namespace

QString DesktopSession::tab() { return stateProperty(bus, QStringLiteral("Tab")).toString(); }

std::optional<bool> DesktopSession::windowShown() {
    const QVariant v = stateProperty(bus, QStringLiteral("WindowShown"));
    if (!v.isValid()) return std::nullopt;
    return v.toBool();
}

QString DesktopSession::activateAction(const QString& action, const QVariantList& parameter) {
    QDBusMessage m = QDBusMessage::createMethodCall(QStringLiteral("app.sorrelin.Sorrelin"), QStringLiteral("/app/sorrelin/Sorrelin"),
                                                    QStringLiteral("org.freedesktop.Application"), QStringLiteral("ActivateAction"));
    QVariantList wrapped;
    for (const auto& p : parameter) wrapped << QVariant::fromValue(QDBusVariant(p));
    m << action << QVariant::fromValue(wrapped) << QVariantMap();
    const QDBusMessage reply = BusReply::await(bus, m, 10000);
    return reply.type() == QDBusMessage::ErrorMessage ? reply.errorName() : QString();
}
