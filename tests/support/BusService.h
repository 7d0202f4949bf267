#pragma once
// A program on a private session bus, played by a thread of the test: it holds a name and
// answers calls to any object under it, each by its method's name:
//   "Hang"    never answered, as an app that is stuck;
//   "Text"    answers the string "hello" (signature "s");
//   "Flag"    answers the boolean true (signature "b");
//   "Refuse"  answers with an error;
//   any other method answers with no values, as ActivateAction and the restart dialogs do.
// It connects with sd-bus on its own thread and keeps that connection to that thread alone.
#include "platform/SessionBus.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class BusService {
public:
    struct Received {
        std::string path, interface, method, signature;
        std::vector<BusValue> values; // strings and booleans, as a reply's are read
    };

    // Connects to the bus at `address` and asks for `name`; `onCall` runs on the service's
    // thread for each call, before it is answered.
    BusService(std::string address, std::string name, std::function<void(const Received&)> onCall = {});
    ~BusService();
    BusService(const BusService&) = delete;
    BusService& operator=(const BusService&) = delete;

    // Whether it holds its name; false again once the bus has gone.
    [[nodiscard]] bool ready();

    // The calls received, once there are `count` of them or `seconds` have passed.
    [[nodiscard]] std::vector<Received> received(std::size_t count, double seconds);

    // Answers the calls that were left hanging, as an app that comes back to life.
    void answerHanging();

private:
    void serve(std::string address, std::string name);

    std::function<void(const Received&)> onCall;
    std::mutex m;
    std::condition_variable changed;
    std::vector<Received> calls;
    bool started = false, holding = false, stopping = false, release = false;
    std::thread thread;
};
