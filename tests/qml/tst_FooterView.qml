// SPDX-License-Identifier: MIT
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
        const line = ViewInspector.all(footer, "QQuickRectangle").find(r => r.height === 1);
        const age = ViewInspector.text(footer, "Updated just now");
        const button = ViewInspector.first(footer, "FooterButton");
        compareTable([
            ["height", footer.height, 44],
            ["colour", footer.color, Theme.elevated],
            ["line", frame(line, footer), "0 0 384 1"],
            ["line colour", line.color, Theme.border],
            ["age x", age.mapToItem(footer, 0, 0).x, 14],
            ["age centre", centre(age, footer).y, 22, 0.5],
            ["age style", ViewInspector.style(age), "11 400 system #5c5c5c"],
            ["button right", button.x + button.width, 384 - 14],
            ["button centre", centre(button, footer).y, 22],
            ["texts", ViewInspector.texts(footer), ["Updated just now", "Quit"]],
            ["symbols", ViewInspector.symbols(footer), ["power"]]
        ]);
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

    function test_updates_on_a_tick() {
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
