#include "ui/shell/EndSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace EndSignals {

namespace {

int pipeEnds[2] = {-1, -1};

// Only async-signal-safe work here: one byte into the pipe the event loop watches.
void onSignal(int) {
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(pipeEnds[0], &byte, 1);
}

} // namespace

void quitOn(QCoreApplication& app) {
    if (pipeEnds[0] != -1) return;
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pipeEnds) != 0) return;
    auto* notifier = new QSocketNotifier(pipeEnds[1], QSocketNotifier::Read, &app);
    QObject::connect(notifier, &QSocketNotifier::activated, &app, [&app] {
        char byte;
        [[maybe_unused]] const auto read = ::read(pipeEnds[1], &byte, 1);
        app.quit();
    });
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int sig : {SIGTERM, SIGHUP, SIGINT}) ::sigaction(sig, &action, nullptr);
}

} // namespace EndSignals
