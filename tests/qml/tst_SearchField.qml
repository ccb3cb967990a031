// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Portolan
import PortolanTest

ViewTest {
    id: root

    readonly property string placeholder: "Search by name, port, or path"
    readonly property string hint: "\u2318K"

    name: "SearchField"

    Component {
        id: component

        SearchField {
            width: 384
        }
    }

    function test_geometry() {
        const view = createTemporaryObject(component, root);
        const field = ViewInspector.first(view, "RoundedRect");
        const symbol = ViewInspector.symbol(view, "magnifyingglass");
        const input = ViewInspector.first(view, "SearchInput");
        const hint = ViewInspector.first(view, "KeyHint");
        const hintText = ViewInspector.text(view, root.hint);
        compareTable([
            ["height", view.height, 54],
            ["field", frame(field, view), "14 10 356 34"],
            ["field radius", field.radius, 9],
            ["field colour", field.color, Theme.card],
            ["symbol x", symbol.mapToItem(field, 0, 0).x, 11],
            ["symbol centre", centre(symbol, field).y, 17],
            ["symbol size", symbol.size, 12],
            ["symbol weight", symbol.weight, Font.Medium],
            ["input x", input.mapToItem(field, 0, 0).x, 11 + symbol.width + 8],
            ["input centre", centre(input, field).y, 17, 0.5],
            ["input style", ViewInspector.style(input), "13 400 system #ededed"],
            ["texts", ViewInspector.texts(view), [root.placeholder, root.hint]],
            ["key hint right", hint.mapToItem(view, 0, 0).x + hint.width, 384 - 14 - 11],
            ["key hint radius", hint.radius, 4],
            ["key hint border", hint.borderColor, Theme.border],
            ["key hint width", hint.width, hintText.width + 10],
            ["key hint height", hint.height, hintText.height + 4],
            ["key hint style", ViewInspector.style(hintText), "10 500 system #5c5c5c"]
        ]);
    }

    function test_focus_colours() {
        const view = createTemporaryObject(component, root);
        const field = ViewInspector.first(view, "RoundedRect");
        const symbol = ViewInspector.symbol(view, "magnifyingglass");
        verify(!view.focused);
        compare(field.borderColor, Theme.border);
        compare(symbol.color, Theme.textMuted);
        const start = Date.now();
        mouseClick(view, 200, 27);
        verify(view.focused);
        verify(field.borderColor !== Qt.alpha(Theme.accent, 0.7) || Date.now() - start >= 110); // during the transition
        tryCompare(field, "borderColor", Qt.alpha(Theme.accent, 0.7));
        verify(Date.now() - start >= 110);
        tryCompare(symbol, "color", Theme.text);
    }

    function test_focuses_by_keys_data() {
        return [
            { tag: "Control-K", modifiers: Qt.ControlModifier, focuses: true },
            { tag: "Meta-K", modifiers: Qt.MetaModifier, focuses: true },
            { tag: "Control-Shift-K", modifiers: Qt.ControlModifier | Qt.ShiftModifier, focuses: true },
            { tag: "Meta-Alt-K", modifiers: Qt.MetaModifier | Qt.AltModifier, focuses: true },
            { tag: "Alt-K", modifiers: Qt.AltModifier, focuses: false },
            { tag: "K", modifiers: Qt.NoModifier, focuses: false }
        ];
    }

    function test_focuses_by_keys(data) {
        const view = createTemporaryObject(component, root);
        keyClick(Qt.Key_K, data.modifiers);
        compare(view.focused, data.focuses);
        compare(view.text, "");
    }

    function test_keys_while_focused() {
        const view = createTemporaryObject(component, root);
        keyClick(Qt.Key_K, Qt.ControlModifier);
        keyClick(Qt.Key_K);
        compare(view.text, "k");
        keyClick(Qt.Key_A);
        keyClick(Qt.Key_Home);
        keyClick(Qt.Key_K, Qt.ControlModifier);
        compare(view.text, "ka"); // not cut at the cursor
        verify(view.focused);
    }

    function test_clear_button() {
        const view = createTemporaryObject(component, root, {
            text: "x"
        });
        compare(ViewInspector.texts(view), ["x"]);
        compare(ViewInspector.symbols(view), ["magnifyingglass", "xmark.circle.fill"]);
        const symbol = ViewInspector.symbol(view, "xmark.circle.fill");
        compare(symbol.size, 12);
        compare(symbol.color, Theme.textFaint);
        const clear = ViewInspector.named(view, "Clear");
        compare(clear.mapToItem(view, 0, 0).x + clear.width, 384 - 14 - 11);
        mouseClick(clear);
        compare(view.text, "");
        compare(ViewInspector.texts(view), [root.placeholder, root.hint]);
    }

    function test_focus_stays_when_cleared_by_key() {
        const view = createTemporaryObject(component, root, {
            text: "x"
        });
        keyClick(Qt.Key_K, Qt.ControlModifier);
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Space);
        compare(view.text, "");
        verify(view.focused);
    }

    function test_long_text_stays_inside() {
        const view = createTemporaryObject(component, root, {
            text: "W".repeat(500)
        });
        const input = ViewInspector.first(view, "SearchInput");
        verify(input.clip);
        compare(input.x + input.width, ViewInspector.named(view, "Clear").x - 8);
    }

    function test_accessible_name() {
        const view = createTemporaryObject(component, root);
        compare(ViewInspector.roleAndName(ViewInspector.first(view, "SearchInput")), "EditableText: " + root.placeholder);
    }
}
