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
        compare(button.height, 28);
        compare(symbol.mapToItem(button, 0, 0).x, 10);
        compare(label.mapToItem(button, 0, 0).x, 10 + symbol.width + 5);
        compare(button.width, 10 + symbol.width + 5 + label.width + 10);
        compare(centre(symbol, button).y, 14);
        fuzzyCompare(centre(label, button).y, 14, 0.5);
        compare(symbol.size, 11);
        compare(symbol.weight, Font.DemiBold);
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
        const ground = ViewInspector.first(button, "RoundedRect");
        compare(ground.color, Theme.cardHover);
        compare(ground.radius, 8);
        compare(frame(ground, button), frame(button, button));
    }

    function test_calls_and_names_itself() {
        const button = createTemporaryObject(component, root);
        clicks.target = button;
        clicks.clear();
        mouseClick(button);
        compare(clicks.count, 1);
        compare(ViewInspector.roleAndName(button), "Button: Quit");
    }
}
