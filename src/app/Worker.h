#pragma once
// The application's own worker threads. Long jobs run here on copies of what they need, and
// their results hop back to the main thread by a queued call; a result whose receiver is gone
// is dropped by Qt.
#include <QMetaObject>
#include <QObject>
#include <QThreadPool>

#include <functional>
#include <memory>

class Worker {
public:
    // Queue order among waiting jobs: interactive work first, background walks last.
    enum class Priority { background = 0, utility = 1, userInitiated = 2 };

    // Enough threads that a clean never waits behind a scan, a storage walk and a growth walk.
    explicit Worker(int threads = 6);
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    // Runs `work` on a worker thread, then `done` with its result on `context`'s thread.
    template <class R>
    void run(Priority priority, QObject* context, std::function<R()> work, std::function<void(R)> done) {
        start(priority, [context, work = std::move(work), done = std::move(done)]() mutable {
            auto result = std::make_shared<R>(work());
            post(context, [done = std::move(done), result] { done(std::move(*result)); });
        });
    }
    void run(Priority priority, QObject* context, std::function<void()> work, std::function<void()> done);
    // Runs `work` on a worker thread, nothing after.
    void start(Priority priority, std::function<void()> work);
    // Queues `job` on `context`'s thread.
    static void post(QObject* context, std::function<void()> job);
    // Blocks until every started job has returned.
    void waitForDone();

private:
    QThreadPool pool;
};
