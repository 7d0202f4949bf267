#include "app/Worker.h"

Worker::Worker(int threads) {
    pool.setMaxThreadCount(threads);
    pool.setExpiryTimeout(30'000);
}

Worker::~Worker() { pool.waitForDone(); }

void Worker::run(Priority priority, QObject* context, std::function<void()> work, std::function<void()> done) {
    start(priority, [context, work = std::move(work), done = std::move(done)]() mutable {
        work();
        post(context, std::move(done));
    });
}

void Worker::start(Priority priority, std::function<void()> work) {
    pool.start(std::move(work), static_cast<int>(priority));
}

void Worker::post(QObject* context, std::function<void()> job) {
    QMetaObject::invokeMethod(context, std::move(job), Qt::QueuedConnection);
}

void Worker::waitForDone() { pool.waitForDone(); }
