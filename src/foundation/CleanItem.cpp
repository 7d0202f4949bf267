#include "foundation/CleanItem.h"

#include "foundation/Candidate.h"
#include "foundation/Text.h"

#include <initializer_list>

CleanItem Candidate::item(int64_t size) const {
    CleanItem it;
    it.id = id;
    it.tier = tier;
    it.name = name;
    it.location = location;
    it.note = note;
    it.paths = paths;
    it.removal = removal;
    it.size = size;
    it.lockedReason = lockedReason;
    it.defaultOn = lockedReason ? false : defaultOn;
    it.reveal = reveal.empty() ? paths : reveal;
    it.cacheKind = cacheKind;
    it.lastUsed = lastUsed;
    return it;
}

std::string CleanItem::shortLocation() const {
    if (location == mergedLocation || location == mergedLocationLinux) return "Caches + App Support";
    std::string s = Text::replaceAll(location, "~/Library/Application Support/", "App Support/");
    s = Text::replaceAll(std::move(s), "~/Library/Caches/", "Caches/");
    s = Text::replaceAll(std::move(s), "~/.config/", "Config/");
    s = Text::replaceAll(std::move(s), "~/.cache/", "Caches/");
    return s;
}

std::string CleanItem::fullLocation() const {
    if (paths.size() < 2) return location;
    return location + ", " + std::to_string(paths.size()) + " folders";
}

bool CleanItem::isOpen() const { return Text::contains(note, "open now"); }

std::optional<std::string> CleanItem::recentLabel() const {
    if (Text::contains(note, "changed today")) return "Changed today";
    if (Text::contains(note, "changed yesterday")) return "Changed yesterday";
    return std::nullopt;
}

std::string CleanItem::shortNote() const {
    std::string s = note;
    for (std::string_view cut : {" · open now", " · changed today", " · changed yesterday"})
        s = Text::replaceAll(std::move(s), cut, "");
    return Text::replaceAll(std::move(s), " · ", ", ");
}

CleanItem::Kind CleanItem::kind() const {
    auto starts = [&](std::string_view p) { return std::string_view(id).starts_with(p); };
    const std::string lowered = Text::lower(name);
    auto nameHas = [&](std::initializer_list<std::string_view> words) {
        for (auto w : words)
            if (Text::contains(lowered, w)) return true;
        return false;
    };

    if (starts("project:")) return {"folder", "indigo"};
    if (starts("download:")) {
        std::string_view n = note;
        if (n.starts_with("Installer")) return {"opticaldisc", "rose"};
        if (n.starts_with("Video")) return {"film", "rose"};
        if (n.starts_with("Archive")) return {"doc.zipper", "rose"};
        if (n.starts_with("App")) return {"app.dashed", "rose"};
        if (n.starts_with("Folder")) return {"folder", "rose"};
        return {"doc", "rose"};
    }
    if (id == "claude-vm") return {"display", "claude"};
    if (std::string_view(id).ends_with("-model")) return {"cpu", "#5B9BF8"};
    if (starts("node:")) return {"terminal", "mint"};
    if (starts("models:")) return {"cube", "claude"};
    if (starts("pnpm-store")) return {"square.stack.3d.up", "pink"};
    if (id == "docker") return {"shippingbox", "slate"};
    if (id == "ios-backups") return {"iphone", "rose"};
    if (starts("xcode") || id == "sim-caches" || id == "device-support") return {"hammer", "teal"};
    if (id == "simulators") return {"iphone", "teal"};
    if (id == "logs") return {"doc.text", "slate"};
    if (id == "brew") return {"mug", "mint"};
    if (nameHas({"update files"})) return {"arrow.down.to.line", "slate"};
    if (nameHas({"chrome", "edge", "brave", "firefox", "google", "playwright", "puppeteer"}))
        return {"globe", "#5B9BF8"};
    if (nameHas({"slack", "discord", "whatsapp", "teams", "zoom", "telegram"})) return {"bubble.left", "#A48BFA"};
    if (nameHas({"claude", "codex", "chatgpt", "openai"})) return {"sparkle", "claude"};
    if (nameHas({"code", "cursor", "typescript", "zed", "jetbrains", "antigravity", "windsurf"}))
        return {"chevron.left.forwardslash.chevron.right", "teal"};
    if (nameHas({"npm", "npx", "pnpm", "yarn", "bun", "pip", "cargo", "gradle", "cocoapods", "go build", "deno", "uv "}))
        return {"shippingbox", "pink"};
    if (nameHas({"node", "convex", "prisma", "turbo"})) return {"terminal", "mint"};
    if (nameHas({"spotify", "music"})) return {"waveform", "rose"};
    return {"shippingbox", "slate"};
}
