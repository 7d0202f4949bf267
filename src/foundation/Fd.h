#pragma once
// An owned file descriptor, closed when it goes out of scope.
#include <unistd.h>

#include <utility>

class Fd {
public:
    Fd() = default;
    explicit Fd(int fd) : value(fd) {}
    ~Fd() { reset(); }
    Fd(Fd&& other) noexcept : value(std::exchange(other.value, -1)) {}
    Fd& operator=(Fd&& other) noexcept {
        if (this != &other) {
            reset();
            value = std::exchange(other.value, -1);
        }
        return *this;
    }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;

    [[nodiscard]] int get() const { return value; }
    [[nodiscard]] bool valid() const { return value >= 0; }
    explicit operator bool() const { return valid(); }
    void reset(int fd = -1) {
        if (value >= 0) ::close(value);
        value = fd;
    }

private:
    int value = -1;
};
