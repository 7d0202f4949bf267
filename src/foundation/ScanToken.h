#pragma once
#include <memory>
#include <mutex>

// Shared cancel flag of one long job. Cancelling is one way: a token is never reset.
class ScanToken {
public:
    [[nodiscard]] bool isCancelled() const {
        std::lock_guard guard(lock);
        return cancelled;
    }
    void cancel() {
        std::lock_guard guard(lock);
        cancelled = true;
    }
    [[nodiscard]] static std::shared_ptr<ScanToken> make() { return std::make_shared<ScanToken>(); }

private:
    mutable std::mutex lock;
    bool cancelled = false;
};
