#include "ui/Palette.h"

#include <QQmlComponent>
#include <QQmlEngine>

#include <gtest/gtest.h>

TEST(Palette, MembersCarryTheirValuesAndTheHoverWashIsTranslucentWhite) {
    Palette p;
    EXPECT_EQ(p.value("window").value<QColor>(), QColor("#18191D"));
    EXPECT_EQ(p.value("amberTop").value<QColor>(), QColor("#FFC861"));
    EXPECT_EQ(p.value("tipText").value<QColor>(), QColor("#E6E8EC"));
    EXPECT_EQ(p.value("onAmber").value<QColor>(), QColor("#1B1406"));
    QColor hover = p.value("hover").value<QColor>();
    EXPECT_EQ(hover.rgb() & 0xFFFFFF, 0xFFFFFFu);
    EXPECT_NEAR(hover.alphaF(), 0.035, 0.003);
    // Every group of the design: 16 surfaces, 7 text colours, 25 accents, 8 chart and tip colours.
    EXPECT_EQ(p.keys().size(), 56);
}

TEST(Palette, NamedTintsResolveAndUnknownOnesFallBackToSlate) {
    Palette p;
    EXPECT_EQ(p.named("purple"), QColor("#A88BFA"));
    // The runway's dark tone is written as a colour of its own.
    EXPECT_EQ(p.named("#3A2226"), QColor("#3A2226"));
    EXPECT_EQ(p.named("no-such-tint"), QColor("#9AA0AA"));
    EXPECT_EQ(p.named(""), QColor("#9AA0AA"));
    // Almost a colour is not one: a short or non-hex code is a name the palette lacks.
    EXPECT_FALSE(Palette::lookup("#3A222").has_value());
    EXPECT_FALSE(Palette::lookup("#3A222G").has_value());
    EXPECT_NEAR(p.named("amber", 0.14).alphaF(), 0.14, 0.005);
    // An opacity multiplies what the member already has, and stays within 0..1.
    EXPECT_NEAR(p.named("hover", 0.5).alphaF(), 0.0175, 0.003);
    EXPECT_EQ(p.named("amber", 7).alphaF(), 1.0f);
    EXPECT_EQ(p.named("amber", -1).alphaF(), 0.0f);
}

TEST(Palette, QmlReadsMembersAndCannotChangeThem) {
    QQmlEngine engine;
    engine.addImportPath("qrc:/qt/qml");
    QQmlComponent c(&engine);
    c.setData("import Sorrelin\nimport QtQuick\nItem {\n"
              "  property color before: Palette.amber\n"
              "  Component.onCompleted: Palette.amber = 'red'\n"
              "  property color named: Palette.named('teal', 0.5)\n"
              "}\n",
              QUrl("qrc:/palette-test.qml"));
    std::unique_ptr<QObject> o(c.create());
    ASSERT_TRUE(o) << c.errorString().toStdString();
    EXPECT_EQ(o->property("before").value<QColor>(), QColor("#F5B946"));
    QQmlComponent again(&engine);
    again.setData("import Sorrelin\nimport QtQuick\nItem { property color after: Palette.amber }\n", QUrl("qrc:/palette-again.qml"));
    std::unique_ptr<QObject> o2(again.create());
    ASSERT_TRUE(o2);
    EXPECT_EQ(o2->property("after").value<QColor>(), QColor("#F5B946"));
    QColor named = o->property("named").value<QColor>();
    EXPECT_EQ(named.rgb() & 0xFFFFFF, QColor("#33C7B5").rgb() & 0xFFFFFF);
    EXPECT_NEAR(named.alphaF(), 0.5, 0.01);
}
