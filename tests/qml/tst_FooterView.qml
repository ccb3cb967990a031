import QtQuick
import QtTest
import Portolan
import PortolanTest

ViewTest {
    id: root

    name: "FooterView"

    Component {
        id: component

        FooterView {
            width: 384
            lastUpdated: new Date()
            tick: 0
        }
    }

    SignalSpy {
        id: quits

        signalName: "quit"
    }

    function make(properties) {
        const footer = createTemporaryObject(component, root, properties);
        quits.target = footer;
        quits.clear();
        return footer;
    }

    function secondsAgo(seconds) {
        return new Date(Date.now() - 1000 * seconds - 100);
    }

    function test_geometry() {
        const footer = make();
        compare(footer.height, 44);
        compare(footer.color, Theme.elevated);
        const line = ViewInspector.all(footer, "QQuickRectangle").find(r => r.height === 1);
        compare(frame(line, footer), "0 0 384 1");
        compare(line.color, Theme.border);
        const age = ViewInspector.text(footer, "Updated just now");
        compare(age.mapToItem(footer, 0, 0).x, 14);
        fuzzyCompare(centre(age, footer).y, 22, 0.5);
        compare(ViewInspector.style(age), "11 400 system #5c5c5c");
        const button = ViewInspector.first(footer, "FooterButton");
        compare(button.x + button.width, 384 - 14);
        compare(centre(button, footer).y, 22);
        compare(ViewInspector.texts(footer), ["Updated just now", "Quit"]);
        compare(ViewInspector.symbols(footer), ["power"]);
    }

    function test_age_data() {
        return [
            { tag: "future", seconds: -60, text: "Updated just now" },
            { tag: "2 s", seconds: 2, text: "Updated just now" },
            { tag: "3 s", seconds: 3, text: "Updated 3s ago" },
            { tag: "59 s", seconds: 59, text: "Updated 59s ago" },
            { tag: "60 s", seconds: 60, text: "Updated 1m ago" },
            { tag: "119 s", seconds: 119, text: "Updated 1m ago" },
            { tag: "3600 s", seconds: 3600, text: "Updated 60m ago" }
        ];
    }

    function test_age(data) {
        const footer = make({
            lastUpdated: secondsAgo(data.seconds)
        });
        compare(ViewInspector.texts(footer), [data.text, "Quit"]);
    }

    function test_before_the_first_scan_there_is_only_quit() {
        const footer = make({
            lastUpdated: new Date(NaN)
        });
        compare(ViewInspector.texts(footer), ["Quit"]);
    }

    function test_looks_again_at_a_tick() {
        const footer = make({
            lastUpdated: secondsAgo(1.5)
        });
        compare(ViewInspector.texts(footer)[0], "Updated just now");
        wait(1600);
        compare(ViewInspector.texts(footer)[0], "Updated just now");
        footer.tick += 1;
        verify(/^Updated \ds ago$/.test(ViewInspector.texts(footer)[0]));
    }

    function test_never_overlaps() {
        const footer = make({
            width: 120,
            lastUpdated: secondsAgo(1e9)
        });
        const button = ViewInspector.first(footer, "FooterButton");
        const age = ViewInspector.all(footer, "PlainLabel")[0];
        compare(age.x + age.width, button.x - 8);
    }

    function test_quits() {
        const footer = make();
        mouseClick(ViewInspector.named(footer, "Quit"));
        compare(quits.count, 1);
        compare(ViewInspector.roleAndName(ViewInspector.text(footer, "Updated just now")), "StaticText: Updated just now");
    }
}
