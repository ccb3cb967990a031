import QtQuick
import QtTest
import Portolan
import PortolanTest

ViewTest {
    id: root

    name: "HeaderIconButton"

    Component {
        id: component

        HeaderIconButton {
            symbol: "arrow.clockwise"
            label: "Refresh"
        }
    }

    SignalSpy {
        id: clicks

        signalName: "clicked"
    }

    function make() {
        const button = createTemporaryObject(component, root);
        clicks.target = button;
        clicks.clear();
        return button;
    }

    function test_geometry() {
        const button = make();
        compare(frame(button, root), "0 0 28 28");
        const symbol = ViewInspector.symbol(button, "arrow.clockwise");
        compare(centre(symbol, button), Qt.point(14, 14));
        compare(symbol.size, 12.5);
        compare(symbol.weight, Font.DemiBold);
    }

    function test_ground_shows_while_hovered() {
        const button = make();
        const symbol = ViewInspector.symbol(button, "arrow.clockwise");
        verify(!ViewInspector.first(button, "RoundedRect"));
        compare(symbol.color, Theme.textMuted);
        point(button);
        const ground = ViewInspector.first(button, "RoundedRect");
        compare(frame(ground, button), "0 0 28 28");
        compare(ground.radius, 7);
        compare(ground.color, Theme.cardHover);
        compare(symbol.color, Theme.textStrong);
    }

    function test_shows_where_the_keyboard_is() {
        const button = make();
        button.forceActiveFocus();
        compare(ViewInspector.first(button, "FocusRing").borderColor, Qt.alpha(Theme.accent, 0.7));
    }

    function test_calls_and_names_itself() {
        const button = make();
        mouseClick(button);
        compare(clicks.count, 1);
        compare(button.toolTip, "Refresh");
        compare(ViewInspector.roleAndName(button), "Button: Refresh");
    }
}
