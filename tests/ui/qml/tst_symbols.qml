import Sorrelin
import QtQuick
import QtTest

TestCase {
    id: test
    name: "Symbols"
    when: windowShown
    width: 300
    height: 200
    visible: true

    Component { id: glyphComponent; Glyph { size: 20 } }
    Component { id: iconComponent; ItemIcon { size: 30; symbol: "app" } }
    Component { id: reasonComponent; ReasonTag {} }

    function test_anUnknownSymbolStillDrawsAMark() {
        const glyph = createTemporaryObject(glyphComponent, test, { symbol: "no.such.symbol" });
        compare(glyph.shape, "");
        verify(Symbols.glyph("no.such.symbol") !== "");
        compare(Symbols.glyph("no.such.symbol"), Symbols.glyph("nothing.either"));
    }

    function test_ourOwnShapesAreNotGlyphs() {
        const glyph = createTemporaryObject(glyphComponent, test, { symbol: "custom.broom" });
        compare(glyph.shape, "broom");
        compare(Symbols.glyph("custom.broom"), "");
    }

    function test_aMissingAppIconFallsBackToTheSymbolTile() {
        const icon = createTemporaryObject(iconComponent, test, { appPath: "/no/such/app.desktop" });
        verify(!icon.hasIcon);
        const none = createTemporaryObject(iconComponent, test, { appPath: "" });
        verify(!none.hasIcon);
    }

    function test_aReasonTagShowsTheAdviceModelsWords() {
        const tag = createTemporaryObject(reasonComponent, test, { reason: "disk" });
        compare(tag.text, "Disk low");
        compare(tag.symbol, "internaldrive");
        verify(tag.visible);
        tag.showIcon = false;
        compare(tag.symbol, "");
        tag.reason = "nonsense";
        verify(!tag.visible);
        tag.reason = 1;
        compare(tag.text, "Memory tight");
    }

    function test_springsAndEasesFollowTheMotionSwitches() {
        verify(Motion.snappy.duration > 0);
        Motion.reduced = true;
        compare(Motion.snappy.duration, 0);
        compare(Motion.animate, false);
        Motion.reduced = false;
        compare(Motion.quick.duration, Math.round(140 * Motion.slow));
    }
}
