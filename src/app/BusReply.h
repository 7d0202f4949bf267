#pragma once
// A bus call that waits for its answer while this thread's own events go on, so an object of
// this same process can answer it, and that gives up at its time limit. QDBus::BlockWithGui
// can miss an answer that comes back before it starts waiting and then never returns.
#include <QDBusConnection>
#include <QDBusMessage>

namespace BusReply {

// The answer to `call`, or an error message when there was none within `ms` milliseconds.
[[nodiscard]] QDBusMessage await(const QDBusConnection& bus, const QDBusMessage& call, int ms);

} // namespace BusReply
