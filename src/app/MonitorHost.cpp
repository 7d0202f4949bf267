#include "app/MonitorHost.h"

void MonitorHost::repeat(double interval, double /*tolerance*/, std::function<void()> tick) {
    if (timer) clock.cancel(*timer);
    timer = clock.every(interval, context, std::move(tick));
    current = interval;
}

void MonitorHost::after(double seconds, std::function<void()> job) { clock.after(seconds, context, std::move(job)); }

void MonitorHost::work(std::function<void()> work, std::function<void()> done) {
    // Sampling reads /proc for every process: background work, below anything the user waits for.
    worker.run(Worker::Priority::background, context, std::move(work), std::move(done));
}
