#include "app/Prefs.h"

#include "foundation/Rendering.h"
#include "foundation/Support.h"

#include <algorithm>

namespace {

QString qs(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }

} // namespace

const std::vector<MenuSection>& Prefs::defaultOrder() {
    static const std::vector<MenuSection> order{MenuSection::freeSpace, MenuSection::nextStep, MenuSection::quickClean,
                                                MenuSection::openApp,   MenuSection::status,   MenuSection::vitals,
                                                MenuSection::storage};
    return order;
}

const std::set<MenuSection>& Prefs::defaultHidden() {
    static const std::set<MenuSection> hidden{MenuSection::status, MenuSection::vitals, MenuSection::storage};
    return hidden;
}

Prefs::Choices Prefs::defaults() { return Choices{defaultOrder(), defaultHidden(), MenuLabelStyle::freeSpace}; }

std::optional<Prefs::Choices> Prefs::decode(const nlohmann::json& stored) {
    if (!stored.is_object()) return std::nullopt;
    auto order = stored.find("order");
    auto hidden = stored.find("hidden");
    auto label = stored.find("label");
    if (order == stored.end() || hidden == stored.end() || label == stored.end()) return std::nullopt;
    if (!order->is_array() || !hidden->is_array() || !label->is_string()) return std::nullopt;

    Choices c;
    for (const auto& entry : *order) {
        if (!entry.is_string()) return std::nullopt;
        auto section = MenuSections::fromRaw(entry.get<std::string>());
        if (!section) return std::nullopt;
        if (std::find(c.order.begin(), c.order.end(), *section) == c.order.end()) c.order.push_back(*section);
    }
    for (const auto& entry : *hidden) {
        if (!entry.is_string()) return std::nullopt;
        auto section = MenuSections::fromRaw(entry.get<std::string>());
        if (!section) return std::nullopt;
        c.hidden.insert(*section);
    }
    auto style = MenuLabelStyles::fromRaw(label->get<std::string>());
    if (!style) return std::nullopt;
    c.label = *style;
    // A section the stored list never knew arrives at the end, switched off, so the user's
    // own layout stays as it was.
    for (MenuSection s : MenuSections::allCases)
        if (std::find(c.order.begin(), c.order.end(), s) == c.order.end()) {
            c.order.push_back(s);
            c.hidden.insert(s);
        }
    return c;
}

nlohmann::json Prefs::encode(const Choices& c) {
    nlohmann::json order = nlohmann::json::array(), hidden = nlohmann::json::array();
    for (MenuSection s : c.order) order.push_back(std::string(MenuSections::raw(s)));
    for (MenuSection s : c.hidden) hidden.push_back(std::string(MenuSections::raw(s)));
    return {{"order", order}, {"hidden", hidden}, {"label", std::string(MenuLabelStyles::raw(c.label))}};
}

Prefs& Prefs::shared() {
    static Prefs instance(Support::defaults());
    return instance;
}

Prefs::Prefs(SettingsStore& store, QObject* parent)
    : QObject(parent), store(store), choices(defaults()),
      sections([](MenuSection s) { return std::string(MenuSections::raw(s)); },
               {{"id", [](MenuSection s) { return QVariant(qs(MenuSections::raw(s))); }},
                {"title", [](MenuSection s) { return QVariant(qs(MenuSections::title(s))); }},
                {"detail", [](MenuSection s) { return QVariant(qs(MenuSections::detail(s))); }},
                {"symbol", [](MenuSection s) { return QVariant(qs(MenuSections::symbol(s))); }},
                {"on", [this](MenuSection s) { return QVariant(isOn(s)); }}},
               this) {
    // A value that can't be read means defaults for this run; it stays in place until the next save.
    if (auto stored = store.value(key))
        if (auto decoded = decode(*stored)) choices = std::move(*decoded);
    sections.update(choices.order);
}

void Prefs::save() const {
    if (Tools::rendering) return;
    (void)store.set(key, encode(choices));
}

void Prefs::changed(bool wasDefault, bool orderChanged, bool hiddenChanged) {
    if (orderChanged) {
        sections.update(choices.order);
        emit menuOrderChanged();
    }
    if (hiddenChanged) {
        sections.touchAll({sections.role("on")});
        emit menuHiddenChanged();
    }
    if (orderChanged || hiddenChanged) emit visibleChanged();
    if (wasDefault != isDefault()) emit isDefaultChanged();
}

void Prefs::setMenuOrder(std::vector<MenuSection> order) {
    const bool wasDefault = isDefault();
    const bool differs = order != choices.order;
    choices.order = std::move(order);
    save();
    if (differs) changed(wasDefault, true, false);
}

void Prefs::setMenuHidden(std::set<MenuSection> hidden) {
    const bool wasDefault = isDefault();
    const bool differs = hidden != choices.hidden;
    choices.hidden = std::move(hidden);
    save();
    if (differs) changed(wasDefault, false, true);
}

void Prefs::setLabelStyle(MenuLabelStyle style) {
    const bool wasDefault = isDefault();
    const bool differs = style != choices.label;
    choices.label = style;
    save();
    if (!differs) return;
    emit labelStyleChanged();
    if (wasDefault != isDefault()) emit isDefaultChanged();
}

std::vector<MenuSection> Prefs::visible() const {
    std::vector<MenuSection> out;
    for (MenuSection s : choices.order)
        if (isOn(s)) out.push_back(s);
    return out;
}

void Prefs::set(MenuSection section, bool on) {
    auto hidden = choices.hidden;
    if (on) hidden.erase(section);
    else hidden.insert(section);
    setMenuHidden(std::move(hidden));
}

void Prefs::move(const std::vector<int>& rows, int to) {
    const int n = static_cast<int>(choices.order.size());
    std::vector<int> picked;
    for (int r : rows)
        if (r >= 0 && r < n && std::find(picked.begin(), picked.end(), r) == picked.end()) picked.push_back(r);
    std::sort(picked.begin(), picked.end());
    to = std::clamp(to, 0, n);
    std::vector<MenuSection> moving, rest;
    int insertAt = 0;
    for (int i = 0; i < n; ++i) {
        const bool isPicked = std::binary_search(picked.begin(), picked.end(), i);
        if (isPicked) moving.push_back(choices.order[static_cast<std::size_t>(i)]);
        else {
            if (i < to) ++insertAt;
            rest.push_back(choices.order[static_cast<std::size_t>(i)]);
        }
    }
    rest.insert(rest.begin() + insertAt, moving.begin(), moving.end());
    setMenuOrder(std::move(rest));
}

void Prefs::reset() {
    setMenuOrder(defaultOrder());
    setMenuHidden(defaultHidden());
    setLabelStyle(MenuLabelStyle::freeSpace);
}

bool Prefs::isOn(const QString& section) const {
    auto s = MenuSections::fromRaw(section.toStdString());
    return s && isOn(*s);
}

void Prefs::set(const QString& section, bool on) {
    if (auto s = MenuSections::fromRaw(section.toStdString())) set(*s, on);
}

void Prefs::move(const QList<int>& rows, int to) { move(std::vector<int>(rows.begin(), rows.end()), to); }

QStringList Prefs::menuOrderIds() const {
    QStringList out;
    for (MenuSection s : choices.order) out << qs(MenuSections::raw(s));
    return out;
}

QStringList Prefs::menuHiddenIds() const {
    QStringList out;
    for (MenuSection s : choices.order)
        if (choices.hidden.contains(s)) out << qs(MenuSections::raw(s));
    return out;
}

QString Prefs::labelStyleId() const { return qs(MenuLabelStyles::raw(choices.label)); }

void Prefs::setLabelStyleId(const QString& id) {
    if (auto style = MenuLabelStyles::fromRaw(id.toStdString())) setLabelStyle(*style);
}

QStringList Prefs::visibleIds() const {
    QStringList out;
    for (MenuSection s : visible()) out << qs(MenuSections::raw(s));
    return out;
}

QVariantList Prefs::labelStyles() {
    QVariantList out;
    for (MenuLabelStyle s : MenuLabelStyles::allCases)
        out << QVariantMap{{QStringLiteral("id"), qs(MenuLabelStyles::raw(s))}, {QStringLiteral("title"), qs(MenuLabelStyles::title(s))}};
    return out;
}
