#include "platform/SessionBus.h"

std::string BusValue::signature() const {
    switch (kind) {
    case Kind::string: return "s";
    case Kind::boolean: return "b";
    case Kind::emptyArray: return "a" + text;
    case Kind::emptyDict: return "a{" + text + "}";
    }
    return {};
}

std::optional<bool> SessionBus::flag(const Reply& reply) {
    if (!reply.ok || reply.signature != "b" || reply.values.size() != 1) return std::nullopt;
    return reply.values.front().flag;
}

bool SessionBus::hasOwner(const std::string& name) const {
    BusCall ask{"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
                {BusValue::string(name)}};
    return flag(call(ask, 5)).value_or(false);
}
