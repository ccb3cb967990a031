// SPDX-License-Identifier: MIT
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
        const [title, message] = data.texts.map(text => ViewInspector.text(view, text));
        const top = item => item.mapToItem(view, 0, 0).y;
        compareTable([
            ["symbol size", symbol.size, 26],
            ["symbol weight", symbol.weight, Font.Normal],
            ["symbol colour", symbol.color, Theme.textFaint],
            ["title style", ViewInspector.style(title), "14 600 system #c7c7c7"],
            ["message style", ViewInspector.style(message), "12 400 system #8f8f8f"],
            ["message alignment", message.horizontalAlignment, Text.AlignHCenter],
            ["symbol top", top(symbol), 40],
            ["title top", top(title), 40 + symbol.height + 10],
            ["message top", top(message), 40 + symbol.height + 10 + title.height + 10],
            ["height", view.height, top(message) + message.height + 40],
            ["symbol centre", centre(symbol, view).x, 192, 0.5],
            ["title centre", centre(title, view).x, 192, 0.5],
            ["message centre", centre(message, view).x, 192, 0.5],
            ["title role", ViewInspector.roleAndName(title), "StaticText: " + title.text],
            ["message role", ViewInspector.roleAndName(message), "StaticText: " + message.text]
        ]);
        verify(message.width <= 240);
    }

    function test_breaks_the_message_into_lines() {
        const view = createTemporaryObject(component, root);
        const message = ViewInspector.text(view, "Start a dev server and it appears here automatically.");
        compare(message.width, 240);
        verify(message.lineCount >= 2);
    }
}
