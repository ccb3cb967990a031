// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Portolan
import PortolanTest

ViewTest {
    id: root

    name: "ToolTip"

    Component {
        id: component

        HeaderIconButton {
            symbol: "arrow.clockwise"
            label: "Refresh"
        }
    }

    function popup() {
        return ViewInspector.first(root.Window.contentItem, "ToolTipPopup");
    }

    function shown(properties) {
        const button = createTemporaryObject(component, root, properties);
        point(button);
        tryVerify(popup, 2000);
        return button;
    }

    function test_is_shown_after_a_delay() {
        const start = Date.now();
        shown();
        verify(Date.now() - start >= 590);
        compare(ViewInspector.texts(popup()), ["Refresh"]);
        compare(ViewInspector.roleAndName(popup()), "ToolTip: Refresh");
    }

    function test_style_and_position() {
        shown({ x: 100, y: 100 });
        const text = ViewInspector.text(popup(), "Refresh");
        compare(ViewInspector.style(text), "11 400 system #ededed");
        compare(popup().width, text.width + 16);
        compare(popup().height, text.height + 8);
        compare(popup().y, 100 + 28 + 6);
        fuzzyCompare(centre(popup(), root).x, 114, 0.5);
    }

    function test_is_hidden_when_the_pointer_leaves() {
        shown();
        leave();
        verify(!popup());
    }

    function test_is_hidden_on_a_press() {
        const button = shown();
        mousePress(button);
        verify(!popup());
        mouseRelease(button);
    }

    function test_is_destroyed_with_its_control() {
        const button = shown();
        button.destroy();
        tryVerify(() => !popup());
    }

    function test_stays_in_the_window_data() {
        return [
            { tag: "left top", x: 0, y: 0 },
            { tag: "right top", x: 472, y: 0 },
            { tag: "right bottom", x: 472, y: 672 }
        ];
    }

    function test_stays_in_the_window(data) {
        shown({ x: data.x, y: data.y });
        verify(popup().x >= 4 && popup().x + popup().width <= root.Window.width - 4);
        verify(popup().y >= 4 && popup().y + popup().height <= root.Window.height - 4);
    }

    function test_is_plain_text_and_elided() {
        shown({ label: "<b>" + "W".repeat(500) });
        const text = ViewInspector.first(popup(), "QQuickText");
        compare(text.textFormat, Text.PlainText);
        verify(text.truncated);
        verify(popup().width <= root.Window.width);
    }
}
