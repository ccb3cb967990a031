// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Portolan
import PortolanTest

ViewTest {
    id: root

    name: "RowIconButton"

    Component {
        id: component

        RowIconButton {
            x: 40
            y: 40
            symbol: "doc.on.doc"
            help: "Copy URL"
        }
    }

    SignalSpy {
        id: clicks

        signalName: "clicked"
    }

    function make(properties) {
        const button = createTemporaryObject(component, root, properties);
        clicks.target = button;
        clicks.clear();
        return button;
    }

    function test_geometry() {
        const button = make();
        const background = ViewInspector.first(button, "RoundedRect");
        const symbol = ViewInspector.symbol(button, "doc.on.doc");
        compareTable([
            ["button", frame(button, root), "40 40 26 26"],
            ["background", frame(background, button), "0 0 26 26"],
            ["background radius", background.radius, 7],
            ["symbol centre", centre(symbol, button), Qt.point(13, 13)],
            ["symbol size", symbol.size, 11.5],
            ["symbol weight", symbol.weight, Font.DemiBold]
        ]);
    }

    function test_colours() {
        const button = make();
        const background = ViewInspector.first(button, "RoundedRect");
        const symbol = ViewInspector.symbol(button, "doc.on.doc");
        compare(background.color, Qt.rgba(1, 1, 1, 0.04));
        compare(symbol.color, Theme.textMuted);
        point(button);
        verify(button.hovering);
        compare(background.color, Theme.cardHover);
        compare(symbol.color, Theme.textStrong);
        leave();
        verify(!button.hovering);
        compare(symbol.color, Theme.textMuted);
    }

    function test_keeps_its_tint_while_hovered() {
        const button = make({
            tint: Theme.offline
        });
        const symbol = ViewInspector.symbol(button, "doc.on.doc");
        compare(symbol.color, Theme.offline);
        point(button);
        compare(symbol.color, Theme.offline);
    }

    function test_click_data() {
        return [
            { tag: "click", press: button => mouseClick(button) },
            { tag: "space", press: button => keyClick(Qt.Key_Space) },
            { tag: "return", press: button => keyClick(Qt.Key_Return) },
            { tag: "enter", press: button => keyClick(Qt.Key_Enter) },
            { tag: "assistive", press: button => button.Accessible.pressAction() }
        ];
    }

    function test_click(data) {
        const button = make();
        button.forceActiveFocus();
        data.press(button);
        compare(clicks.count, 1);
    }

    function test_a_held_key_clicks_once() {
        const button = make();
        button.forceActiveFocus();
        for (const key of [Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter])
            Keyboard.holdKey(button, key);
        compare(clicks.count, 3);
    }

    function test_ignores_the_right_button() {
        const button = make();
        mouseClick(button, 13, 13, Qt.RightButton);
        compare(clicks.count, 0);
    }

    function test_accessible_name() {
        compare(ViewInspector.roleAndName(make()), "Button: Copy URL");
    }

    function test_shows_a_tool_tip() {
        const button = make();
        point(button);
        verify(!ViewInspector.text(root.Window.contentItem, "Copy URL"));
        tryVerify(() => ViewInspector.text(root.Window.contentItem, "Copy URL"));
        leave();
        tryVerify(() => !ViewInspector.text(root.Window.contentItem, "Copy URL"));
    }
}
