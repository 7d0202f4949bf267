#include "support/BusService.h"

#include <systemd/sd-bus.h>

#include <chrono>

namespace {

BusService::Received describe(sd_bus_message* m) {
    BusService::Received r;
    r.path = sd_bus_message_get_path(m) ? sd_bus_message_get_path(m) : "";
    r.interface = sd_bus_message_get_interface(m) ? sd_bus_message_get_interface(m) : "";
    r.method = sd_bus_message_get_member(m) ? sd_bus_message_get_member(m) : "";
    if (const char* s = sd_bus_message_get_signature(m, 1)) r.signature = s;
    char type = 0;
    const char* contents = nullptr;
    while (sd_bus_message_peek_type(m, &type, &contents) > 0) {
        if (type == 's') {
            const char* text = nullptr;
            if (sd_bus_message_read_basic(m, 's', &text) < 0) break;
            r.values.push_back(BusValue::string(text ? text : ""));
        } else if (type == 'b') {
            int flag = 0;
            if (sd_bus_message_read_basic(m, 'b', &flag) < 0) break;
            r.values.push_back(BusValue::boolean(flag));
        } else if (sd_bus_message_skip(m, nullptr) < 0) {
            break;
        }
    }
    sd_bus_message_rewind(m, 1);
    return r;
}

struct Served {
    std::vector<sd_bus_message*>* hanging;
    std::function<void(sd_bus_message*)> record;
};

int handle(sd_bus_message* m, void* data, sd_bus_error*) {
    auto* s = static_cast<Served*>(data);
    s->record(m);
    const std::string method = sd_bus_message_get_member(m) ? sd_bus_message_get_member(m) : "";
    if (method == "Hang") {
        s->hanging->push_back(sd_bus_message_ref(m));
        return 1;
    }
    if (method == "Text") return sd_bus_reply_method_return(m, "s", "hello");
    if (method == "Flag") return sd_bus_reply_method_return(m, "b", 1);
    if (method == "Refuse") return sd_bus_reply_method_errorf(m, SD_BUS_ERROR_ACCESS_DENIED, "Not you.");
    return sd_bus_reply_method_return(m, "");
}

} // namespace

BusService::BusService(std::string address, std::string name, std::function<void(const Received&)> onCall)
    : onCall(std::move(onCall)) {
    thread = std::thread([this, address = std::move(address), name = std::move(name)] { serve(address, name); });
    std::unique_lock lock(m);
    changed.wait_for(lock, std::chrono::seconds(30), [&] { return started; });
}

BusService::~BusService() {
    {
        std::lock_guard lock(m);
        stopping = true;
    }
    if (thread.joinable()) thread.join();
}

void BusService::serve(std::string address, std::string name) {
    sd_bus* bus = nullptr;
    bool ok = sd_bus_new(&bus) >= 0 && sd_bus_set_address(bus, address.c_str()) >= 0 &&
              sd_bus_set_bus_client(bus, 1) >= 0 && sd_bus_start(bus) >= 0;
    std::vector<sd_bus_message*> hanging;
    Served served{&hanging, [this](sd_bus_message* msg) {
                      Received r = describe(msg);
                      if (onCall) onCall(r);
                      std::lock_guard lock(m);
                      calls.push_back(std::move(r));
                      changed.notify_all();
                  }};
    ok = ok && sd_bus_add_fallback(bus, nullptr, "/", handle, &served) >= 0 &&
         sd_bus_request_name(bus, name.c_str(), 0) >= 0;
    {
        std::lock_guard lock(m);
        started = true;
        holding = ok;
        changed.notify_all();
    }
    // Waits in short steps so that the test's end is seen.
    while (ok) {
        {
            std::lock_guard lock(m);
            if (stopping) break;
            if (release) {
                for (sd_bus_message* h : hanging) {
                    (void)sd_bus_reply_method_return(h, "");
                    sd_bus_message_unref(h);
                }
                hanging.clear();
                release = false;
            }
        }
        int r = sd_bus_process(bus, nullptr);
        if (r < 0) break;
        if (r == 0) (void)sd_bus_wait(bus, 50'000);
    }
    for (sd_bus_message* h : hanging) sd_bus_message_unref(h);
    sd_bus_flush_close_unref(bus);
    std::lock_guard lock(m);
    holding = false;
    changed.notify_all();
}

bool BusService::ready() {
    std::lock_guard lock(m);
    return holding;
}

std::vector<BusService::Received> BusService::received(std::size_t count, double seconds) {
    std::unique_lock lock(m);
    changed.wait_for(lock, std::chrono::duration<double>(seconds), [&] { return calls.size() >= count; });
    return calls;
}

void BusService::answerHanging() {
    std::lock_guard lock(m);
    release = true;
}
