#include "platform/SessionBus.h"

#include "foundation/Text.h"

std::string BusValue::signature() const {
    switch (kind) {
    case Kind::string: return "s";
    case Kind::boolean: return "b";
    case Kind::emptyArray: return "a" + text;
    case Kind::emptyDict: return "a{" + text + "}";
    }
    return {};
}

bool SessionBus::hasOwner(const std::string& name) const {
    BusCall ask{"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
                {BusValue::string(name)}};
    Reply reply = call(ask, 5);
    // busctl answers "b true", gdbus "(true,)".
    return reply.ok && Text::contains(reply.text, "true");
}
