#include "advice/Rec.h"

namespace RecReasons {

std::string_view label(RecReason r) {
    switch (r) {
    case RecReason::slow: return "Slow now";
    case RecReason::memory: return "Memory tight";
    case RecReason::disk: return "Disk low";
    case RecReason::wait: return "Can wait";
    case RecReason::snoozed: return "Not now";
    }
    return {};
}

std::string_view symbol(RecReason r) {
    switch (r) {
    case RecReason::slow: return "bolt.fill";
    case RecReason::memory: return "memorychip";
    case RecReason::disk: return "internaldrive";
    case RecReason::wait:
    case RecReason::snoozed: return "clock";
    }
    return {};
}

std::string_view fg(RecReason r) {
    switch (r) {
    case RecReason::slow: return "orangeText";
    case RecReason::memory: return "memText";
    case RecReason::disk: return "amberText";
    case RecReason::wait:
    case RecReason::snoozed: return "text2";
    }
    return {};
}

Fill bg(RecReason r) {
    switch (r) {
    case RecReason::slow: return {"orange", 0.14};
    case RecReason::memory: return {"browser", 0.15};
    case RecReason::disk: return {"amber", 0.14};
    case RecReason::wait:
    case RecReason::snoozed: return {"#2A2C33", 1};
    }
    return {};
}

} // namespace RecReasons
