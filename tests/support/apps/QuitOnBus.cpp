// An app for the end-to-end tests of the actions. It holds the bus name it is given, as a
// D-Bus activatable desktop app does, and quits only through its own Quit action on the bus: the
// polite signals it ignores, as an app with a question on screen would go on showing it.
// Usage: sorrelin_testapp NAME LOG [ARGS...]; each start and each Quit adds a line to LOG.
#include "support/BusService.h"

#include <signal.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <fstream>
#include <mutex>

int main(int argc, char** argv) {
    if (argc < 3) return 2;
    signal(SIGTERM, SIG_IGN);
    signal(SIGINT, SIG_IGN);
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (!address) return 3;
    const std::string log = argv[2];
    auto note = [&](const std::string& line) { std::ofstream(log, std::ios::app) << line << '\n'; };

    std::mutex m;
    std::condition_variable asked;
    bool quit = false;
    std::string started = "started";
    for (int i = 3; i < argc; ++i) started += std::string(" ") + argv[i];
    {
        BusService service(address, argv[1], [&](const BusService::Received& call) {
            if (call.interface != "org.freedesktop.Application" || call.method != "ActivateAction" ||
                call.values.empty() || call.values.front().text != "quit")
                return;
            note("quit by its Quit action");
            std::lock_guard lock(m);
            quit = true;
            asked.notify_all();
        });
        if (!service.ready()) return 4;
        note(started);
        // Lives as long as its bus, and an hour at most, so that a test that failed leaves
        // nothing behind.
        std::unique_lock lock(m);
        for (int i = 0; i < 3600 && !quit; ++i) {
            asked.wait_for(lock, std::chrono::seconds(1), [&] { return quit; });
            lock.unlock();
            const bool onBus = service.ready();
            lock.lock();
            if (!onBus) break;
        }
    } // the service answers the Quit and closes its connection before the app ends
    return 0;
}
