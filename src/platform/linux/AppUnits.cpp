#include "platform/linux/AppUnits.h"

#include "foundation/Text.h"

namespace AppUnits {

namespace {

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx"
bool isUuid(std::string_view s) {
    if (s.size() != 36) return false;
    for (std::size_t i = 0; i < s.size(); ++i) {
        bool dash = i == 8 || i == 13 || i == 18 || i == 23;
        if (dash ? s[i] != '-' : hexValue(s[i]) < 0) return false;
    }
    return true;
}

std::string joinPieces(const std::vector<std::string>& pieces, std::size_t from, std::size_t to) {
    std::string out;
    for (std::size_t i = from; i < to; ++i) {
        if (i > from) out += '-';
        out += pieces[i];
    }
    return out;
}

void add(UnitIds& u, std::string id) {
    if (id.empty()) return;
    for (const auto& known : u.ids)
        if (known == id) return;
    u.ids.push_back(std::move(id));
}

// "dbus-:1.2-org.gnome.Terminal" gives "org.gnome.Terminal".
std::optional<std::string> dbusName(std::string_view name) {
    if (!name.starts_with("dbus-:")) return std::nullopt;
    auto dash = name.find('-', 6);
    if (dash == std::string_view::npos || dash + 1 >= name.size()) return std::nullopt;
    return std::string(name.substr(dash + 1));
}

} // namespace

std::string unescape(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '\\' && i + 3 < s.size() && s[i + 1] == 'x' && hexValue(s[i + 2]) >= 0 && hexValue(s[i + 3]) >= 0) {
            out += static_cast<char>(hexValue(s[i + 2]) * 16 + hexValue(s[i + 3]));
            i += 3;
        } else {
            out += s[i];
        }
    }
    return out;
}

std::optional<UnitIds> parse(std::string_view unit) {
    UnitIds u;
    auto strip = [&](std::string_view suffix) {
        if (!unit.ends_with(suffix)) return false;
        unit.remove_suffix(suffix.size());
        return true;
    };

    if (unit.starts_with("snap.") && strip(".scope")) {
        if (unit.size() <= 5) return std::nullopt;
        std::string_view body = unit.substr(5);
        // The launch's own part at the end: a UUID, or one dash-separated piece.
        if (body.size() > 37 && isUuid(body.substr(body.size() - 36)) && body[body.size() - 37] == '-')
            body.remove_suffix(37);
        else if (auto dash = body.rfind('-'); dash != std::string_view::npos)
            body = body.substr(0, dash);
        auto dot = body.find('.');
        if (dot == std::string_view::npos || dot == 0 || dot + 1 >= body.size()) return std::nullopt;
        std::string snap(body.substr(0, dot)), app(body.substr(dot + 1));
        add(u, snap + "_" + app); // snapd names its desktop files <snap>_<app>.desktop
        add(u, app == snap ? snap : app);
        add(u, snap);
        return u;
    }

    if (unit.starts_with("dbus-:") && strip(".service")) {
        auto at = unit.find('@');
        if (auto name = dbusName(unit.substr(0, at))) add(u, *name);
        if (u.ids.empty()) return std::nullopt;
        return u;
    }

    if (!unit.starts_with("app-")) return std::nullopt;
    std::string_view body; // the name between "app-" and the unit type

    if (strip(".slice")) {
        // A slice groups the units of one app: app-<id>.slice, or one made for a D-Bus name.
        body = unit.substr(4);
        std::string name = unescape(body);
        if (auto d = dbusName(name)) add(u, *d);
        else add(u, name);
        if (u.ids.empty()) return std::nullopt;
        return u;
    }

    if (strip(".service")) {
        body = unit.substr(4);
        auto at = body.find('@');
        std::string_view name = body.substr(0, at);
        if (at != std::string_view::npos && body.substr(at + 1) == "autostart") u.autostart = true;
        // The escaping leaves a plain "-" only after the launcher: app-<launcher>-<id>@...
        auto pieces = Text::split(name, '-', true);
        if (pieces.size() >= 2) add(u, unescape(joinPieces(pieces, 1, pieces.size())));
        add(u, unescape(name));
        if (auto d = dbusName(unescape(name))) add(u, *d);
        if (u.ids.empty()) return std::nullopt;
        return u;
    }

    if (strip(".scope")) {
        body = unit.substr(4);
        auto pieces = Text::split(body, '-', true);
        if (pieces.size() < 2) return std::nullopt;
        // The last piece is the launch's own number; before it either <launcher>-<id> or <id>.
        // Some launchers leave a dash of the id unescaped, so both readings are tried.
        std::size_t last = pieces.size() - 1;
        if (pieces.size() >= 6 && body.size() >= 36 && isUuid(body.substr(body.size() - 36))) last = pieces.size() - 5;
        if (last >= 2) add(u, unescape(joinPieces(pieces, 1, last)));
        add(u, unescape(joinPieces(pieces, 0, last)));
        // GNOME and Flatpak end the name with the pid of the launched process.
        const std::string& tail = pieces.back();
        if (last == pieces.size() - 1 && !tail.empty() && tail.size() <= 9 &&
            tail.find_first_not_of("0123456789") == std::string::npos)
            u.launchPid = static_cast<int32_t>(std::stol(tail));
        if (u.ids.empty()) return std::nullopt;
        return u;
    }
    return std::nullopt;
}

std::optional<Membership> membership(std::string_view cgroup, const std::string& exe, const AppBundles& bundles) {
    auto components = Text::split(cgroup, '/');
    auto unitMatch = [&](std::size_t index) -> std::optional<Membership> {
        auto ids = parse(components[index]);
        if (!ids) return std::nullopt;
        for (const auto& id : ids->ids)
            if (auto entry = bundles.entry(id)) {
                Membership m;
                for (std::size_t i = 0; i <= index; ++i) m.group += "/" + components[i];
                m.entry = std::move(*entry);
                m.autostart = ids->autostart;
                const std::string& unit = components[index];
                m.kind = unit.ends_with(".service") ? Membership::Kind::service
                         : unit.ends_with(".slice") ? Membership::Kind::slice
                                                    : Membership::Kind::scope;
                m.launchPid = ids->launchPid;
                return m;
            }
        return std::nullopt;
    };

    if (!components.empty())
        if (auto m = unitMatch(components.size() - 1)) return m;

    if (!exe.empty())
        if (auto entry = bundles.entryForExecutable(exe); entry && !entry->terminal && !entry->noDisplay && !entry->hidden)
            return Membership{"exe:" + entry->path, std::move(*entry), false, Membership::Kind::program, std::nullopt};

    for (std::size_t i = components.size(); i-- > 1;) {
        // Stop at the user's service manager: above it lie only session and user slices.
        if (components[i - 1].starts_with("user@")) break;
        if (auto m = unitMatch(i - 1)) return m;
    }
    return std::nullopt;
}

bool isAppProcess(const Membership& m, int32_t pid, std::string_view cgroup, const std::string& exe,
                  const AppBundles& bundles) {
    auto ownProgram = [&] {
        if (exe.empty()) return false;
        auto entry = bundles.entryForExecutable(exe);
        return entry && entry->id == m.entry.id;
    };
    switch (m.kind) {
    case Membership::Kind::program:
    case Membership::Kind::service: return true;
    case Membership::Kind::scope: return (m.launchPid ? pid == *m.launchPid : true) || ownProgram();
    case Membership::Kind::slice: {
        // The app's own service in its slice, not what runs in the scopes beside it.
        auto leaf = cgroup.substr(cgroup.rfind('/') == std::string_view::npos ? 0 : cgroup.rfind('/') + 1);
        return leaf.ends_with(".service") || ownProgram();
    }
    }
    return false;
}

bool isManagedService(std::string_view cgroup, uint32_t uid) {
    const std::string manager = "user@" + std::to_string(uid) + ".service";
    auto components = Text::split(cgroup, '/');
    if (components.empty()) return false;
    const std::string& leaf = components.back();
    if (!leaf.ends_with(".service") || leaf.starts_with("app-")) return false;
    for (std::size_t i = 0; i + 1 < components.size(); ++i)
        if (components[i] == manager) return true;
    return false;
}

} // namespace AppUnits
