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
        compare(frame(button, root), "40 40 26 26");
        const ground = ViewInspector.first(button, "RoundedRect");
        compare(frame(ground, button), "0 0 26 26");
        compare(ground.radius, 7);
        const symbol = ViewInspector.symbol(button, "doc.on.doc");
        compare(centre(symbol, button), Qt.point(13, 13));
        compare(symbol.size, 11.5);
        compare(symbol.weight, Font.DemiBold);
    }

    function test_colours() {
        const button = make();
        const ground = ViewInspector.first(button, "RoundedRect");
        const symbol = ViewInspector.symbol(button, "doc.on.doc");
        compare(ground.color, Qt.rgba(1, 1, 1, 0.04));
        compare(symbol.color, Theme.textMuted);
        point(button);
        verify(button.hovering);
        compare(ground.color, Theme.cardHover);
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

    function test_is_pressed_by_every_means_data() {
        return [
            { tag: "click", press: button => mouseClick(button) },
            { tag: "space", press: button => keyClick(Qt.Key_Space) },
            { tag: "return", press: button => keyClick(Qt.Key_Return) },
            { tag: "enter", press: button => keyClick(Qt.Key_Enter) },
            { tag: "assistive", press: button => button.Accessible.pressAction() }
        ];
    }

    function test_is_pressed_by_every_means(data) {
        const button = make();
        button.forceActiveFocus();
        data.press(button);
        compare(clicks.count, 1);
    }

    function test_is_pressed_once_by_a_key_that_is_held() {
        const button = make();
        button.forceActiveFocus();
        for (const key of [Qt.Key_Space, Qt.Key_Return, Qt.Key_Enter])
            Keyboard.holdKey(button, key);
        compare(clicks.count, 3);
    }

    function test_is_not_pressed_by_the_right_button() {
        const button = make();
        mouseClick(button, 13, 13, Qt.RightButton);
        compare(clicks.count, 0);
    }

    function test_says_what_it_is() {
        compare(ViewInspector.roleAndName(make()), "Button: Copy URL");
    }

    function test_shows_its_help_after_a_while() {
        const button = make();
        point(button);
        verify(!ViewInspector.text(root.Window.contentItem, "Copy URL"));
        tryVerify(() => ViewInspector.text(root.Window.contentItem, "Copy URL"));
        leave();
        tryVerify(() => !ViewInspector.text(root.Window.contentItem, "Copy URL"));
    }
}
