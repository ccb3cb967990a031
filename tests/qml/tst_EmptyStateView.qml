import QtQuick
import QtTest
import Portolan
import PortolanTest

ViewTest {
    id: root

    name: "EmptyStateView"

    Component {
        id: component

        EmptyStateView {
            width: 384
            isSearching: false
        }
    }

    function test_shows_data() {
        return [
            {
                tag: "nothing running",
                isSearching: false,
                symbol: "wifi.slash",
                texts: ["Nothing running", "Start a dev server and it appears here automatically."]
            },
            {
                tag: "no matches",
                isSearching: true,
                symbol: "magnifyingglass",
                texts: ["No matches", "Try a different name or port."]
            }
        ];
    }

    function test_shows(data) {
        const view = createTemporaryObject(component, root, {
            isSearching: data.isSearching
        });
        compare(ViewInspector.symbols(view), [data.symbol]);
        compare(ViewInspector.texts(view), data.texts);

        const symbol = ViewInspector.symbol(view, data.symbol);
        const title = ViewInspector.text(view, data.texts[0]);
        const message = ViewInspector.text(view, data.texts[1]);
        compare(symbol.size, 26);
        compare(symbol.weight, Font.Normal);
        compare(symbol.color, Theme.textFaint);
        compare(ViewInspector.style(title), "14 600 system #c7c7c7");
        compare(ViewInspector.style(message), "12 400 system #8f8f8f");
        compare(message.horizontalAlignment, Text.AlignHCenter);
        verify(message.width <= 240);

        compare(symbol.mapToItem(view, 0, 0).y, 40);
        compare(title.mapToItem(view, 0, 0).y, 40 + symbol.height + 10);
        compare(message.mapToItem(view, 0, 0).y, 40 + symbol.height + 10 + title.height + 10);
        compare(view.height, message.mapToItem(view, 0, 0).y + message.height + 40);
        for (const part of [symbol, title, message])
            fuzzyCompare(centre(part, view).x, 192, 0.5);
        for (const part of [title, message])
            compare(ViewInspector.roleAndName(part), "StaticText: " + part.text);
    }

    function test_breaks_the_message_into_lines() {
        const view = createTemporaryObject(component, root);
        const message = ViewInspector.text(view, "Start a dev server and it appears here automatically.");
        compare(message.width, 240);
        verify(message.lineCount >= 2);
    }
}
