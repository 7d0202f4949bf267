#include "platform/linux/SdSessionBus.h"

#include <systemd/sd-bus.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <memory>

namespace {

using Steady = std::chrono::steady_clock;

// Connections kept for later calls; more callers at once open more, and the extras close.
constexpr std::size_t keptIdle = 2;

struct Closer {
    // No flush: a bus that does not answer would hold it without a limit, and every call has had
    // its reply by then.
    void operator()(sd_bus* b) const { sd_bus_close_unref(b); }
};
using Connection = std::unique_ptr<sd_bus, Closer>;

struct MessageUnref {
    void operator()(sd_bus_message* m) const { sd_bus_message_unref(m); }
};
using Message = std::unique_ptr<sd_bus_message, MessageUnref>;

struct Error {
    sd_bus_error e = SD_BUS_ERROR_NULL;
    Error() = default;
    Error(const Error&) = delete;
    Error& operator=(const Error&) = delete;
    ~Error() { sd_bus_error_free(&e); }
};

std::string problem(int r, const sd_bus_error* e = nullptr) {
    if (e && sd_bus_error_is_set(e) && e->message && *e->message) return e->message;
    return std::strerror(r < 0 ? -r : r);
}

uint64_t microsecondsUntil(Steady::time_point deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(deadline - Steady::now()).count();
    return left > 0 ? static_cast<uint64_t>(left) : 0;
}

// Reads what came in on an idle connection and tells whether it is still open: a bus that went
// away while the connection waited shows here, before a call is made on it.
bool stillOpen(sd_bus* b) {
    int r;
    while ((r = sd_bus_process(b, nullptr)) > 0) {}
    return r >= 0 && sd_bus_is_open(b) > 0;
}

// A new connection to the user's session bus, with its greeting done before the deadline.
Connection connect(Steady::time_point deadline, std::string& why) {
    sd_bus* raw = nullptr;
    if (int r = sd_bus_open_user(&raw); r < 0) {
        why = "There is no session bus (" + problem(r) + ").";
        return nullptr;
    }
    Connection b(raw);
    while (sd_bus_is_ready(b.get()) <= 0) {
        int r = sd_bus_process(b.get(), nullptr);
        if (r > 0) continue;
        if (r < 0 || sd_bus_is_open(b.get()) <= 0) {
            why = "The session bus closed the connection (" + problem(r) + ").";
            return nullptr;
        }
        const uint64_t left = microsecondsUntil(deadline);
        if (left == 0) {
            why = "The session bus did not answer in time.";
            return nullptr;
        }
        (void)sd_bus_wait(b.get(), left);
    }
    return b;
}

int append(sd_bus_message* m, const BusValue& v) {
    switch (v.kind) {
    case BusValue::Kind::string: return sd_bus_message_append_basic(m, 's', v.text.c_str());
    case BusValue::Kind::boolean: {
        int flag = v.flag;
        return sd_bus_message_append_basic(m, 'b', &flag);
    }
    case BusValue::Kind::emptyArray: {
        int r = sd_bus_message_open_container(m, 'a', v.text.c_str());
        return r < 0 ? r : sd_bus_message_close_container(m);
    }
    case BusValue::Kind::emptyDict: {
        const std::string entry = "{" + v.text + "}";
        int r = sd_bus_message_open_container(m, 'a', entry.c_str());
        return r < 0 ? r : sd_bus_message_close_container(m);
    }
    }
    return -EINVAL;
}

// The reply's signature and its top-level strings and booleans.
void read(sd_bus_message* m, SessionBus::Reply& out) {
    if (const char* s = sd_bus_message_get_signature(m, 1)) out.signature = s;
    char type = 0;
    const char* contents = nullptr;
    while (sd_bus_message_peek_type(m, &type, &contents) > 0) {
        if (type == 's' || type == 'o' || type == 'g') {
            const char* text = nullptr;
            if (sd_bus_message_read_basic(m, type, &text) < 0) return;
            out.values.push_back(BusValue::string(text ? text : ""));
        } else if (type == 'b') {
            int flag = 0;
            if (sd_bus_message_read_basic(m, 'b', &flag) < 0) return;
            out.values.push_back(BusValue::boolean(flag != 0));
        } else if (sd_bus_message_skip(m, nullptr) < 0) {
            return;
        }
    }
}

} // namespace

SdSessionBus::~SdSessionBus() {
    for (sd_bus* b : idle) Closer{}(b);
}

int SdSessionBus::connections() const {
    std::lock_guard lock(mutex);
    return made;
}

SessionBus::Reply SdSessionBus::call(const BusCall& c, double timeout) const {
    const auto deadline = Steady::now() + std::chrono::microseconds(std::llround(std::max(timeout, 0.001) * 1e6));
    Reply reply;

    // Take a connection of this call's own: see the header.
    Connection bus;
    {
        std::lock_guard lock(mutex);
        while (!idle.empty() && !bus) {
            Connection b(idle.back());
            idle.pop_back();
            if (stillOpen(b.get())) bus = std::move(b);
        }
    }
    if (!bus) {
        bus = connect(deadline, reply.error);
        if (!bus) return reply;
        std::lock_guard lock(mutex);
        ++made;
    }

    sd_bus_message* raw = nullptr;
    int r = sd_bus_message_new_method_call(bus.get(), &raw, c.service.c_str(), c.path.c_str(), c.interface.c_str(),
                                           c.method.c_str());
    Message message(raw);
    // A name nobody holds is not a program to start just to ask it something.
    if (r >= 0) r = sd_bus_message_set_auto_start(message.get(), 0);
    for (const BusValue& v : c.args)
        if (r >= 0) r = append(message.get(), v);
    if (r < 0) {
        reply.error = "The call could not be made (" + problem(r) + ").";
    } else {
        Error error;
        sd_bus_message* answer = nullptr;
        // A limit of 0 would mean sd-bus's own default of 25 seconds.
        const uint64_t left = std::max<uint64_t>(microsecondsUntil(deadline), 1);
        r = sd_bus_call(bus.get(), message.get(), left, &error.e, &answer);
        Message got(answer);
        if (r < 0) {
            reply.error = problem(r, &error.e);
        } else {
            reply.ok = true;
            read(got.get(), reply);
        }
    }

    if (sd_bus_is_open(bus.get()) > 0) {
        std::lock_guard lock(mutex);
        if (idle.size() < keptIdle) idle.push_back(bus.release());
    }
    return reply;
}

const SessionBus& SessionBus::session() {
    static const SdSessionBus bus;
    return bus;
}
