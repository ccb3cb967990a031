// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Portolan
import PortolanTest

ViewTest {
    id: root

    name: "FooterButton"

    Component {
        id: component

        FooterButton {
            symbol: "power"
            label: "Quit"
        }
    }

    SignalSpy {
        id: clicks

        signalName: "clicked"
    }

    function test_geometry() {
        const button = createTemporaryObject(component, root);
        const symbol = ViewInspector.symbol(button, "power");
        const label = ViewInspector.text(button, "Quit");
        compareTable([
            ["height", button.height, 28],
            ["width", button.width, 10 + symbol.width + 5 + label.width + 10],
            ["symbol x", symbol.mapToItem(button, 0, 0).x, 10],
            ["label x", label.mapToItem(button, 0, 0).x, 10 + symbol.width + 5],
            ["symbol centre", centre(symbol, button).y, 14],
            ["label centre", centre(label, button).y, 14, 0.5],
            ["symbol size", symbol.size, 11],
            ["symbol weight", symbol.weight, Font.DemiBold]
        ]);
    }

    function test_colours() {
        const button = createTemporaryObject(component, root);
        const symbol = ViewInspector.symbol(button, "power");
        compare(ViewInspector.style(ViewInspector.text(button, "Quit")), "12 500 system #8f8f8f");
        compare(symbol.color, Theme.textMuted);
        verify(!ViewInspector.first(button, "RoundedRect"));
        point(button);
        compare(ViewInspector.style(ViewInspector.text(button, "Quit")), "12 500 system #ededed");
        compare(symbol.color, Theme.textStrong);
        const background = ViewInspector.first(button, "RoundedRect");
        compare(background.color, Theme.cardHover);
        compare(background.radius, 8);
        compare(frame(background, button), frame(button, button));
    }

    function test_click_and_accessible_name() {
        const button = createTemporaryObject(component, root);
        clicks.target = button;
        clicks.clear();
        mouseClick(button);
        compare(clicks.count, 1);
        compare(ViewInspector.roleAndName(button), "Button: Quit");
    }
}
