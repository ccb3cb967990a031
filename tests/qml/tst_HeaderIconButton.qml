// SPDX-License-Identifier: MIT
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
        const symbol = ViewInspector.symbol(button, "arrow.clockwise");
        compareTable([
            ["button", frame(button, root), "0 0 28 28"],
            ["symbol centre", centre(symbol, button), Qt.point(14, 14)],
            ["symbol size", symbol.size, 12.5],
            ["symbol weight", symbol.weight, Font.DemiBold]
        ]);
    }

    function test_shows_a_background_while_hovered() {
        const button = make();
        const symbol = ViewInspector.symbol(button, "arrow.clockwise");
        verify(!ViewInspector.first(button, "RoundedRect"));
        compare(symbol.color, Theme.textMuted);
        point(button);
        const background = ViewInspector.first(button, "RoundedRect");
        compare(frame(background, button), "0 0 28 28");
        compare(background.radius, 7);
        compare(background.color, Theme.cardHover);
        compare(symbol.color, Theme.textStrong);
    }

    function test_shows_a_focus_ring() {
        const button = make();
        button.forceActiveFocus();
        compare(ViewInspector.first(button, "FocusRing").borderColor, Qt.alpha(Theme.accent, 0.7));
    }

    function test_click_and_accessible_name() {
        const button = make();
        mouseClick(button);
        compare(clicks.count, 1);
        compare(button.toolTip, "Refresh");
        compare(ViewInspector.roleAndName(button), "Button: Refresh");
    }
}
