#include "platform/linux/X11Front.h"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <set>
#include <thread>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

void put16(Bytes& b, uint16_t v) {
    b.push_back(static_cast<uint8_t>(v));
    b.push_back(static_cast<uint8_t>(v >> 8));
}
void put32(Bytes& b, uint32_t v) {
    put16(b, static_cast<uint16_t>(v));
    put16(b, static_cast<uint16_t>(v >> 16));
}
uint32_t get32(const uint8_t* p) { return p[0] | p[1] << 8 | p[2] << 16 | static_cast<uint32_t>(p[3]) << 24; }

bool readAll(int fd, uint8_t* into, std::size_t n) {
    while (n) {
        ssize_t got = read(fd, into, n);
        if (got <= 0) return false;
        into += got;
        n -= static_cast<std::size_t>(got);
    }
    return true;
}

// A server that speaks just enough of the protocol: one screen whose root is 0x1ab, two
// atoms, and the properties it is given.
struct FakeServer {
    uint32_t activeWindow = 0x400007;
    uint32_t windowPid = 4242;
    bool refuse = false;       // fail the connection setup
    bool errorOnPid = false;   // answer the pid request with an error
    bool eventFirst = true;    // an event arrives before the first reply
    std::string authName, authData;
    std::vector<std::pair<uint32_t, uint32_t>> clients; // managed windows and their pids
    std::vector<uint32_t> closed;                         // windows a close was asked for
    bool synced = false;                                  // a round trip came after the last close

    void serve(int fd) {
        uint8_t head[12];
        if (!readAll(fd, head, 12)) return;
        std::size_t n = head[6] | head[7] << 8, d = head[8] | head[9] << 8;
        std::vector<uint8_t> auth((n + 3) / 4 * 4 + (d + 3) / 4 * 4);
        if (!readAll(fd, auth.data(), auth.size())) return;
        authName.assign(auth.begin(), auth.begin() + static_cast<long>(n));
        authData.assign(auth.begin() + static_cast<long>((n + 3) / 4 * 4), auth.begin() + static_cast<long>((n + 3) / 4 * 4 + d));
        if (refuse) {
            Bytes no = {0, 6, 11, 0, 0, 0, 2, 0, 'N', 'o', ' ', 'w', 'a', 'y', 0, 0};
            (void)!write(fd, no.data(), no.size());
            return;
        }
        Bytes info;
        put32(info, 1);          // release
        put32(info, 0x400000);   // resource id base
        put32(info, 0x1fffff);   // mask
        put32(info, 0);          // motion buffer
        put16(info, 5);          // vendor length
        put16(info, 65535);      // maximum request length
        info.push_back(1);       // screens
        info.push_back(1);       // formats
        info.insert(info.end(), 10, 0);
        for (char c : std::string("Fake!\0\0\0", 8)) info.push_back(static_cast<uint8_t>(c));
        info.insert(info.end(), 8, 0); // one format
        put32(info, 0x1ab);            // the root window
        info.insert(info.end(), 36, 0);
        Bytes reply = {1, 0, 11, 0, 0, 0};
        put16(reply, static_cast<uint16_t>(info.size() / 4));
        reply.insert(reply.end(), info.begin(), info.end());
        (void)!write(fd, reply.data(), reply.size());

        uint16_t sequence = 0;
        while (true) {
            uint8_t req[4];
            if (!readAll(fd, req, 4)) return;
            std::vector<uint8_t> body((req[2] | req[3] << 8) * 4 - 4);
            if (!readAll(fd, body.data(), body.size())) return;
            ++sequence;
            Bytes out(32, 0);
            out[0] = 1;
            out[2] = static_cast<uint8_t>(sequence);
            if (eventFirst) {
                Bytes event(32, 0);
                event[0] = 28; // PropertyNotify
                (void)!write(fd, event.data(), event.size());
                eventFirst = false;
            }
            if (req[0] == 25) { // SendEvent: no reply
                uint32_t destination = get32(&body[0]), mask = get32(&body[4]);
                const uint8_t* event = &body[8];
                if (destination == 0x1ab && (mask & (1u << 20)) && event[0] == 33 && event[1] == 32 &&
                    get32(&event[8]) == 304 && get32(&event[16]) == 2)
                    closed.push_back(get32(&event[4]));
                synced = false;
                continue;
            }
            if (req[0] == 43) synced = true; // GetInputFocus
            if (req[0] == 16) { // InternAtom
                std::string name(body.begin() + 4, body.begin() + 4 + (body[0] | body[1] << 8));
                uint32_t atom = name == "_NET_ACTIVE_WINDOW" ? 301
                                : name == "_NET_WM_PID"      ? 302
                                : name == "_NET_CLIENT_LIST" ? 303
                                : name == "_NET_CLOSE_WINDOW" ? 304
                                                              : 0;
                std::memcpy(&out[8], &atom, 4);
            } else if (req[0] == 20) { // GetProperty
                uint32_t window = get32(&body[0]), atom = get32(&body[4]);
                std::vector<uint32_t> values;
                if (window == 0x1ab && atom == 301) values = {activeWindow};
                else if (window == activeWindow && atom == 302) values = {windowPid};
                else if (window == 0x1ab && atom == 303)
                    for (auto [w, p] : clients) values.push_back(w);
                else if (atom == 302)
                    for (auto [w, p] : clients)
                        if (w == window) values = {p};
                if (atom == 302 && errorOnPid) {
                    out[0] = 0;
                    out[1] = 3; // BadWindow
                } else {
                    out[1] = 32;
                    out[4] = static_cast<uint8_t>(values.size()); // words that follow
                    out[8] = 6;                                   // CARDINAL
                    out[16] = static_cast<uint8_t>(values.size());
                    for (uint32_t v : values) {
                        out.resize(out.size() + 4);
                        std::memcpy(&out[out.size() - 4], &v, 4);
                    }
                }
            }
            (void)!write(fd, out.data(), out.size());
        }
    }
};

std::optional<int32_t> ask(FakeServer& server, const std::string& name = "", const std::string& data = "") {
    int fds[2];
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, fds) != 0) return std::nullopt;
    std::thread thread([&] {
        server.serve(fds[1]);
        shutdown(fds[1], SHUT_RDWR);
    });
    auto pid = X11Front::activePid(fds[0], name, data);
    shutdown(fds[0], SHUT_RDWR);
    thread.join();
    close(fds[0]);
    close(fds[1]);
    return pid;
}

int closeOver(FakeServer& server, const std::set<int32_t>& pids) {
    int fds[2];
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, fds) != 0) return -1;
    std::thread thread([&] {
        server.serve(fds[1]);
        shutdown(fds[1], SHUT_RDWR);
    });
    int asked = X11Front::closeWindows(fds[0], "", "", pids);
    shutdown(fds[0], SHUT_RDWR);
    thread.join();
    close(fds[0]);
    close(fds[1]);
    return asked;
}

std::string entry(uint16_t family, const std::string& address, const std::string& number, const std::string& name,
                  const std::string& data) {
    std::string out;
    auto be = [&](uint16_t v) {
        out += static_cast<char>(v >> 8);
        out += static_cast<char>(v & 0xff);
    };
    be(family);
    for (const auto* s : {&address, &number, &name, &data}) {
        be(static_cast<uint16_t>(s->size()));
        out += *s;
    }
    return out;
}

} // namespace

TEST(X11Front, ActiveWindowPid) {
    FakeServer server;
    EXPECT_EQ(ask(server, "MIT-MAGIC-COOKIE-1", std::string("\x01\x02\x03", 3)), 4242);
    EXPECT_EQ(server.authName, "MIT-MAGIC-COOKIE-1");
    EXPECT_EQ(server.authData, std::string("\x01\x02\x03", 3));
}

TEST(X11Front, NothingToTell) {
    FakeServer none;
    none.activeWindow = 0;
    EXPECT_FALSE(ask(none));
    FakeServer error;
    error.errorOnPid = true;
    EXPECT_FALSE(ask(error));
    FakeServer refused;
    refused.refuse = true;
    EXPECT_FALSE(ask(refused));
}

TEST(X11Front, DisplayAndCookie) {
    EXPECT_EQ(X11Front::displayNumber(":0"), "0");
    EXPECT_EQ(X11Front::displayNumber(":12.1"), "12");
    EXPECT_EQ(X11Front::displayNumber("unix:3"), "3");
    EXPECT_FALSE(X11Front::displayNumber("remote.example:0"));
    EXPECT_FALSE(X11Front::displayNumber(":x"));
    EXPECT_FALSE(X11Front::displayNumber(""));

    const std::string mine = entry(256, "desk", "0", "MIT-MAGIC-COOKIE-1", "secret-0");
    const std::string other = entry(256, "desk", "1", "MIT-MAGIC-COOKIE-1", "secret-1");
    const std::string elsewhere = entry(256, "laptop", "0", "MIT-MAGIC-COOKIE-1", "secret-x");
    const std::string wild = entry(65535, "", "", "MIT-MAGIC-COOKIE-1", "secret-w");
    EXPECT_EQ(X11Front::cookie(elsewhere + other + mine, "desk", "0"), "secret-0");
    EXPECT_EQ(X11Front::cookie(elsewhere + other + mine, "desk", "1"), "secret-1");
    EXPECT_FALSE(X11Front::cookie(elsewhere + other, "desk", "0"));
    EXPECT_EQ(X11Front::cookie(elsewhere + wild, "desk", "5"), "secret-w");
    EXPECT_FALSE(X11Front::cookie(mine.substr(0, mine.size() - 3), "desk", "0")); // a cut-off file
}

TEST(X11Front, ClosesEveryWindowOfTheAppsProcessesAndNoOther) {
    FakeServer server;
    server.clients = {{0x500001, 4242}, {0x500002, 777}, {0x500003, 4243}, {0x500004, 4242}};
    EXPECT_EQ(closeOver(server, {4242, 4243}), 3);
    EXPECT_EQ(server.closed, (std::vector<uint32_t>{0x500001, 0x500003, 0x500004}));
    EXPECT_TRUE(server.synced); // the requests reached the server before the connection closed

    FakeServer none;
    none.clients = {{0x500002, 777}};
    EXPECT_EQ(closeOver(none, {4242}), 0);
    EXPECT_TRUE(none.closed.empty());
    FakeServer refused;
    refused.refuse = true;
    refused.clients = {{0x500001, 4242}};
    EXPECT_EQ(closeOver(refused, {4242}), 0);
    EXPECT_TRUE(refused.closed.empty());
    // Outside an X11 session nothing is closed.
    EXPECT_EQ(X11Front::closeWindows(std::set<int32_t>{}), 0);
}
