#pragma once
// What the user may change about the tray panel: which sections it shows, in which order, and
// what the tray item's tooltip label carries. Kept as one JSON value under "prefs" in the
// settings store; every change is saved at once, and nothing is written while screens are
// rendered to pictures.
//
// QML face: menuOrder, menuHidden, visible (lists of section ids), labelStyle (an id),
// isDefault; sections, a list in menuOrder order with the roles id, title, detail, symbol, on;
// labelStyles, the three choices as {id, title}; isOn(id), set(id, on), move(rows, to), reset().
#include "app/MenuSection.h"
#include "app/RecordListModel.h"
#include "foundation/SettingsStore.h"

#include <QObject>
#include <QStringList>
#include <QVariantList>

#include <nlohmann/json.hpp>

#include <optional>
#include <set>
#include <vector>

class Prefs : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList menuOrder READ menuOrderIds NOTIFY menuOrderChanged)
    Q_PROPERTY(QStringList menuHidden READ menuHiddenIds NOTIFY menuHiddenChanged)
    Q_PROPERTY(QString labelStyle READ labelStyleId WRITE setLabelStyleId NOTIFY labelStyleChanged)
    Q_PROPERTY(QStringList visible READ visibleIds NOTIFY visibleChanged)
    Q_PROPERTY(bool isDefault READ isDefault NOTIFY isDefaultChanged)
    Q_PROPERTY(ListModel* sections READ sectionsModel CONSTANT)
    Q_PROPERTY(QVariantList labelStyles READ labelStyles CONSTANT)

public:
    // The three choices as stored.
    struct Choices {
        std::vector<MenuSection> order;
        std::set<MenuSection> hidden;
        MenuLabelStyle label = MenuLabelStyle::freeSpace;
        friend bool operator==(const Choices&, const Choices&) = default;
    };
    static const std::vector<MenuSection>& defaultOrder();
    static const std::set<MenuSection>& defaultHidden();
    [[nodiscard]] static Choices defaults();
    // The stored value read back: absent when it is not a whole, known value. Sections that
    // came after it was saved join at the end, switched off.
    [[nodiscard]] static std::optional<Choices> decode(const nlohmann::json& stored);
    [[nodiscard]] static nlohmann::json encode(const Choices& choices);

    static constexpr const char* key = "prefs";

    // The program's one instance, over the program's settings store.
    static Prefs& shared();
    // Loads from `store` at once; writes nothing back.
    explicit Prefs(SettingsStore& store, QObject* parent = nullptr);

    [[nodiscard]] const std::vector<MenuSection>& menuOrder() const { return choices.order; }
    [[nodiscard]] const std::set<MenuSection>& menuHidden() const { return choices.hidden; }
    [[nodiscard]] MenuLabelStyle labelStyle() const { return choices.label; }
    // Each setter saves, even an equal value; only a change notifies.
    void setMenuOrder(std::vector<MenuSection> order);
    void setMenuHidden(std::set<MenuSection> hidden);
    void setLabelStyle(MenuLabelStyle style);

    [[nodiscard]] std::vector<MenuSection> visible() const;
    [[nodiscard]] bool isDefault() const { return choices == defaults(); }
    [[nodiscard]] bool isOn(MenuSection section) const { return !choices.hidden.contains(section); }
    void set(MenuSection section, bool on);
    // Moves the entries at `rows` to stand before the entry that was at `to`, as a list view
    // reorders; `to` may be the count, for the end.
    void move(const std::vector<int>& rows, int to);

    Q_INVOKABLE bool isOn(const QString& section) const;
    Q_INVOKABLE void set(const QString& section, bool on);
    Q_INVOKABLE void move(const QList<int>& rows, int to);
    Q_INVOKABLE void reset();

    [[nodiscard]] QStringList menuOrderIds() const;
    [[nodiscard]] QStringList menuHiddenIds() const;
    [[nodiscard]] QString labelStyleId() const;
    void setLabelStyleId(const QString& id);
    [[nodiscard]] QStringList visibleIds() const;
    [[nodiscard]] ListModel* sectionsModel() { return &sections; }
    [[nodiscard]] static QVariantList labelStyles();

signals:
    void menuOrderChanged();
    void menuHiddenChanged();
    void labelStyleChanged();
    void visibleChanged();
    void isDefaultChanged();

private:
    void save() const;
    void changed(bool wasDefault, bool orderChanged, bool hiddenChanged);

    SettingsStore& store;
    Choices choices;
    RecordListModel<MenuSection> sections;
};
