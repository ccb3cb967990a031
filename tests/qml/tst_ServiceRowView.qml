// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Portolan
import PortolanTest

ViewTest {
    id: root

    readonly property var full: ({
        name: "shop",
        port: 5173,
        pid: 4242,
        framework: "Vite",
        folder: "/srv/shop",
        health: "healthy",
        ms: 12,
        uptime: 3600,
        cpu: 2.6,
        memory: 87.4
    })

    name: "ServiceRowView"

    Component {
        id: actionsComponent

        RecordedActions {}
    }

    Component {
        id: component

        ServiceRowView {
            width: 480
            isPinned: false
        }
    }

    function make(values, properties) {
        const actions = keep(actionsComponent);
        const row = createTemporaryObject(component, root, Object.assign({
            service: Samples.service(Object.assign({}, root.full, values)),
            actions: actions
        }, properties));
        row.height = row.implicitHeight;
        return [row, actions];
    }

    function card(row) {
        return ViewInspector.first(row, "RoundedRect");
    }

    function test_card_and_tile() {
        const [row] = make();
        const details = ViewInspector.first(row, "ServiceDetails");
        const tile = ViewInspector.first(row, "ServiceTile");
        const symbol = ViewInspector.symbol(tile, "bolt.fill");
        compareTable([
            ["card", frame(card(row), row), frame(row, row)],
            ["card radius", card(row).radius, 10],
            ["card colour", card(row).color, Theme.card],
            ["card border", card(row).borderColor, Theme.border],
            ["details y", details.mapToItem(row, 0, 0).y, 10],
            ["height", row.height, details.height + 20],
            ["tile", frame(tile, row), "12 " + Math.round((row.height - 38) / 2) + " 38 38"],
            ["tile radius", tile.radius, 9],
            ["tile colour", tile.color, Theme.card],
            ["tile border", tile.borderColor, Theme.border],
            ["symbol centre", centre(symbol, tile), Qt.point(19, 19)],
            ["symbol size", symbol.size, 15],
            ["symbol weight", symbol.weight, Font.DemiBold],
            ["symbol colour", symbol.color, Qt.rgba(183 / 255, 148 / 255, 246 / 255, 1)]
        ]);
    }

    function test_lines() {
        const [row] = make();
        const details = ViewInspector.first(row, "ServiceDetails");
        compare(ViewInspector.texts(details), ["shop", "VITE", "localhost:5173", "\u00b7", "pid 4242", "/srv/shop", "1h 0m", "3%", "87 MB"]);
        compare(ViewInspector.symbols(details), ["folder", "clock", "cpu", "memorychip"]);
        compare(details.mapToItem(row, 0, 0).x, 12 + 38 + 12);
        const lines = shownChildren(details);
        for (let i = 1; i < lines.length; ++i)
            compare(lines[i].y, lines[i - 1].y + lines[i - 1].height + 2);
        for (const line of lines)
            compare(line.x, 0);
        compare(ViewInspector.first(row, "Metric").y, 1);
    }

    function test_text_styles_data() {
        return [
            { tag: "shop", style: "13.5 600 system #ededed" },
            { tag: "VITE", style: "8.5 600 system #5c5c5c 0.4" },
            { tag: "localhost:5173", style: "11.5 500 monospaced #8f8f8f" },
            { tag: "\u00b7", style: "13 400 system #5c5c5c" },
            { tag: "pid 4242", style: "11 400 system #5c5c5c" },
            { tag: "/srv/shop", style: "10.5 400 system #5c5c5c" },
            { tag: "1h 0m", style: "10 500 system #5c5c5c" },
            { tag: "3%", style: "10 500 system #5c5c5c" },
            { tag: "87 MB", style: "10 500 system #5c5c5c" },
            { tag: "Online", style: "11.5 500 system #22c55e" },
            { tag: "12 ms", style: "10 500 monospaced #5c5c5c" }
        ];
    }

    function test_text_styles(data) {
        const [row] = make();
        compare(ViewInspector.style(ViewInspector.text(row, data.tag)), data.style);
    }

    function test_symbols_of_the_lines_data() {
        return [
            { tag: "pin.fill", size: 8.5, color: Theme.accent },
            { tag: "folder", size: 9, color: Theme.textFaint },
            { tag: "clock", size: 8.5, color: Theme.textFaint },
            { tag: "cpu", size: 8.5, color: Theme.textFaint },
            { tag: "memorychip", size: 8.5, color: Theme.textFaint }
        ];
    }

    function test_symbols_of_the_lines(data) {
        const [row] = make({}, { isPinned: true });
        const symbol = ViewInspector.symbol(row, data.tag);
        compare(symbol.size, data.size);
        compare(symbol.weight, Font.Normal);
        compare(symbol.color, data.color);
    }

    function test_gaps_data() {
        return [
            ["pin.fill", "shop", 6],
            ["shop", "VITE", 6],
            ["localhost:5173", "\u00b7", 5],
            ["\u00b7", "pid 4242", 5],
            ["folder", "/srv/shop", 4],
            ["clock", "1h 0m", 3],
            ["cpu", "3%", 3],
            ["memorychip", "87 MB", 3],
            ["1h 0m", "cpu", 9],
            ["3%", "memorychip", 9]
        ].map(([left, right, gap]) => ({ tag: left + " to " + right, left: left, right: right, gap: gap }));
    }

    function test_gaps(data) {
        const [row] = make({}, { isPinned: true });
        const item = name => ViewInspector.symbol(row, name) ?? ViewInspector.text(row, name);
        const [left, right] = [item(data.left), item(data.right)];
        const gap = right.mapToItem(row, 0, 0).x - left.mapToItem(row, left.width, 0).x;
        compare(Math.round(gap * 100) / 100, data.gap);
    }

    function test_unpinned_has_no_pin() {
        const [row] = make();
        verify(!ViewInspector.symbol(row, "pin.fill"));
        compare(ViewInspector.text(row, "shop").x, 0);
    }

    function test_missing_values_have_no_line() {
        const [row] = make();
        row.service = Samples.service({ name: "shop", framework: "Vite", port: 5173 });
        compare(ViewInspector.texts(ViewInspector.first(row, "ServiceDetails")), ["shop", "VITE", "localhost:5173", "\u00b7", "pid 4242"]);
        compare(ViewInspector.symbols(ViewInspector.first(row, "ServiceDetails")), []);
    }

    function test_status_data() {
        return [
            { tag: "healthy", ms: 0, texts: ["Online", "0 ms"], color: Theme.online },
            { tag: "unknown", texts: ["\u2014"], color: Theme.textFaint },
            { tag: "checking", texts: ["Checking"], color: Theme.pending },
            { tag: "unreachable", texts: ["Offline"], color: Theme.offline }
        ];
    }

    function test_status(data) {
        const [row] = make({ health: data.tag, ms: data.ms ?? 0 });
        const status = ViewInspector.first(row, "StatusIndicator");
        compare(ViewInspector.texts(status), data.texts);
        const label = ViewInspector.text(status, data.texts[0]);
        const dot = ViewInspector.first(status, "Dot");
        compareTable([
            ["label colour", label.color, data.color],
            ["label opacity", label.opacity, 0.9],
            ["label right", label.mapToItem(row, label.width, 0).x, 480 - 12],
            ["dot colour", dot.color, data.color],
            ["dot width", dot.width, 6],
            ["dot height", dot.height, 6],
            ["gap", label.mapToItem(row, 0, 0).x - dot.mapToItem(row, 6, 0).x, 6],
            ["centre", centre(status, row).y, row.height / 2, 0.5]
        ]);
        if (data.texts.length === 2) {
            const time = ViewInspector.text(status, data.texts[1]);
            compare(time.mapToItem(row, time.width, 0).x, 480 - 12);
            compare(time.y, label.parent.height + 3);
        }
    }

    function test_trailing_column_is_128_wide_data() {
        return [{ tag: "popover", width: 356 }, { tag: "window", width: 452 }];
    }

    function test_trailing_column_is_128_wide(data) {
        const [row] = make({}, { width: data.width });
        const trailing = ViewInspector.first(row, "RowTrailing");
        compare(trailing.x, data.width - 12 - 128);
        compare(trailing.width, 128);
    }

    function test_lines_end_before_the_status() {
        const [row] = make({ pid: 49000, uptime: 8040, memory: 412 }, { width: 356 });
        const status = ViewInspector.first(row, "StatusIndicator");
        const details = ViewInspector.first(row, "ServiceDetails");
        const end = details.mapToItem(row, details.width, 0).x;
        compare(end, 356 - 12 - Math.max(76, status.width) - 18);
        verify(end <= status.mapToItem(row, 0, 0).x - 18);
        // In the popover all values of a typical server are shown.
        for (const text of ["pid 49000", "2h 14m", "3%", "412 MB"])
            verify(ViewInspector.text(details, text), text);
    }

    function test_lines_fade_out_under_the_buttons() {
        const [row] = make({}, { width: 356 });
        verify(!ViewInspector.first(row, "RowFade"));
        point(row);
        tryVerify(() => ViewInspector.first(row, "RowFade")?.opacity === 1);
        const fade = ViewInspector.first(row, "RowFade");
        const trailing = ViewInspector.first(row, "RowTrailing");
        compare(fade.mapToItem(row, 0, 0).x, trailing.x - 20);
        compare(fade.mapToItem(row, fade.width, 0).x, trailing.x + 128);
        // Opaque at the first button, and in the same colour as the card.
        verify(fade.gradient.stops[1].position * fade.width <= 20 + 128 - 116);
        tryCompare(card(row), "color", Theme.cardHover);
        row.Window.window.color = Theme.canvas;
        waitForRendering(row);
        const picture = grabImage(row);
        compare(picture.pixel(356 - 40, 6), picture.pixel(20, 6));
    }

    function test_hover_cross_fades() {
        const [row] = make();
        const start = Date.now();
        point(row);
        verify(row.hovering);
        verify(ViewInspector.first(row, "StatusIndicator") || Date.now() - start >= 120); // during the transition
        tryVerify(() => !ViewInspector.first(row, "StatusIndicator"));
        verify(Date.now() - start >= 120);
        tryCompare(card(row), "color", Theme.cardHover);
        tryCompare(card(row), "borderColor", Theme.borderStrong);
        compare(ViewInspector.symbols(ViewInspector.first(row, "RowTrailing")), ["arrow.up.right", "doc.on.doc", "stop.fill", "ellipsis"]);
        leave();
        verify(!row.hovering);
        tryVerify(() => ViewInspector.first(row, "StatusIndicator") && ViewInspector.symbols(ViewInspector.first(row, "RowTrailing")).length === 0);
        tryCompare(card(row), "color", Theme.card);
    }

    function test_buttons() {
        const [row] = make();
        point(row);
        tryVerify(() => ViewInspector.first(row, "RowActions"));
        const actions = ViewInspector.first(row, "RowActions");
        const buttons = ViewInspector.all(actions, "PlainButton");
        const more = ViewInspector.symbol(row, "ellipsis");
        const moreBackground = ViewInspector.first(buttons[3], "RoundedRect");
        compareTable([
            ["right", actions.mapToItem(row, actions.width, 0).x, 480 - 12],
            ["width", actions.width, 4 * 26 + 3 * 4],
            ["centre", centre(actions, row).y, row.height / 2, 0.5],
            ["buttons", buttons.map(b => frame(b, actions)), ["0 0 26 26", "30 0 26 26", "60 0 26 26", "90 0 26 26"]],
            ["names", buttons.map(b => b.label), ["Open", "Copy URL", "Stop", "More"]],
            ["tool tips", buttons.map(b => b.toolTip), ["Open", "Copy URL", "Stop", ""]],
            ["stop colour", ViewInspector.symbol(row, "stop.fill").color, Theme.offline],
            ["more size", more.size, 12],
            ["more weight", more.weight, Font.DemiBold],
            ["more colour", more.color, Theme.textMuted],
            ["more background", moreBackground.color, Qt.rgba(1, 1, 1, 0.04)],
            ["more radius", moreBackground.radius, 7]
        ]);
    }

    function button(row, name) {
        point(row);
        return rowButton(row, name);
    }

    function test_a_tap_on_the_status_opens() {
        const [row, actions] = make();
        leave();
        const status = ViewInspector.first(row, "StatusIndicator");
        const at = status.mapToItem(row, status.width / 2, status.height / 2);
        const touch = touchEvent(row);
        touch.press(1, row, at.x, at.y).commit();
        touch.release(1, row, at.x, at.y).commit();
        compare(actions.calls, ["openInBrowser 4242-5173"]);
    }

    function test_a_press_on_buttons_that_cannot_be_seen_yet_counts_for_nothing() {
        const [row, actions] = make();
        point(row);
        tryVerify(() => ViewInspector.named(row, "Stop"));
        const stop = ViewInspector.named(row, "Stop");
        const at = stop.mapToItem(row, stop.width / 2, stop.height / 2);
        leave();
        tryVerify(() => !ViewInspector.first(row, "RowActions"));
        mouseMove(row, at.x, at.y);
        mouseClick(row, at.x, at.y);
        const canBeSeen = (ViewInspector.first(row, "RowActions")?.parent.opacity ?? 0) >= 0.5; // on a machine that stood still
        verify(canBeSeen || actions.calls.length === 0);
    }

    function test_buttons_call() {
        const [row, actions] = make();
        mouseClick(button(row, "Open"));
        compare(actions.calls, ["openInBrowser 4242-5173"]);
        mouseClick(button(row, "Copy URL"));
        compare(actions.calls, ["openInBrowser 4242-5173", "copyURL 4242-5173"]);
        mouseClick(button(row, "Stop"));
        compare(actions.calls, ["openInBrowser 4242-5173", "copyURL 4242-5173", "stop 4242-5173"]);
    }

    function test_a_click_on_the_card_opens() {
        const [row, actions] = make();
        mouseClick(row, 20, 20);
        mouseClick(row, 3, 3);
        compare(actions.calls, ["openInBrowser 4242-5173", "openInBrowser 4242-5173"]);
    }

    function test_copying_shows_a_check_mark_for_a_while() {
        const [row] = make();
        const copy = button(row, "Copy URL");
        const first = Date.now();
        mouseClick(copy);
        verify(row.copied);
        compare(ViewInspector.symbol(row, "checkmark").color, Theme.online);
        verify(!ViewInspector.symbol(row, "doc.on.doc"));
        wait(500);
        const second = Date.now();
        mouseClick(button(row, "Copy URL")); // does not make it last longer
        tryVerify(() => !row.copied);
        verify(Date.now() - first >= 1090);
        verify(Date.now() - second < 1090);
        verify(ViewInspector.symbol(row, "doc.on.doc"));
    }

    function test_a_held_key_opens_one_page() {
        const [row, actions] = make();
        row.forceActiveFocus();
        Keyboard.holdKey(row, Qt.Key_Return);
        compare(actions.calls, ["openInBrowser 4242-5173"]);
    }

    function test_keys() {
        const [row, actions] = make();
        row.forceActiveFocus();
        verify(ViewInspector.first(row, "FocusRing"));
        keyClick(Qt.Key_Return);
        compare(actions.calls, ["openInBrowser 4242-5173"]);
        for (const name of ["Open", "Copy URL", "Stop", "More"]) {
            keyClick(Qt.Key_Tab);
            compare(root.Window.activeFocusItem.label, name);
            verify(row.isActive);
        }
        for (const name of ["Stop", "Copy URL", "Open"]) {
            keyClick(Qt.Key_Backtab);
            compare(root.Window.activeFocusItem.label, name);
        }
        keyClick(Qt.Key_Backtab);
        verify(row.activeFocus);
    }

    function test_backtab_enters_at_the_last_button() {
        const [row] = make();
        const after = createTemporaryObject(afterComponent, root);
        after.forceActiveFocus();
        keyClick(Qt.Key_Backtab);
        compare(root.Window.activeFocusItem.label, "More");
        tryVerify(() => ViewInspector.first(row, "RowActions"));
    }

    Component {
        id: afterComponent

        FooterButton {
            symbol: "power"
            label: "Quit"
        }
    }

    function test_a_refresh_keeps_hover_focus_and_buttons() {
        const [row] = make();
        const copy = button(row, "Copy URL");
        copy.forceActiveFocus();
        point(copy);
        row.service = Samples.service(Object.assign({}, root.full, { health: "unreachable", uptime: 3605 }));
        wait(200);
        verify(row.hovering);
        verify(copy.hovering);
        verify(copy.activeFocus);
        verify(ViewInspector.isShown(copy));
    }

    function test_unusual_texts_do_not_overlap_data() {
        return [
            { tag: "long name", values: { name: "W".repeat(10000) } },
            { tag: "no name", values: { name: "" } },
            { tag: "lines", values: { name: "a\nb\u2028c\rd", folder: "/x\ny" } },
            { tag: "marks", values: { name: "z" + "\u0301".repeat(200) } },
            { tag: "long folder", values: { folder: "/" + "deep/".repeat(2000) } },
            { tag: "markup", values: { name: "<h1>x</h1><img src='http://127.0.0.1:1/'>" } },
            { tag: "big numbers", values: { pid: 2147483647, port: 65535, uptime: 9e15, cpu: 1e300, memory: 1e12, ms: 1e9 } },
            { tag: "negative", values: { pid: -2147483648, uptime: -9e15, cpu: -1e9, memory: -1e12 } }
        ];
    }

    function test_unusual_texts_do_not_overlap(data) {
        for (const width of [356, 372, 452, 900]) {
            const [row] = make(data.values, { width: width, isPinned: true });
            const status = ViewInspector.first(row, "StatusIndicator");
            const end = width - 12 - Math.max(76, status.width) - 18;
            const details = ViewInspector.first(row, "ServiceDetails");
            for (const line of shownChildren(details)) {
                verify(line.height < 30, "line height");
                let last = -1;
                for (const part of shownChildren(line).filter(part => part.width > 0)) {
                    const left = part.mapToItem(row, 0, 0).x;
                    const right = left + Math.min(part.width, part.paintedWidth ?? part.width);
                    verify(left >= last, "overlaps the previous item");
                    verify(right <= end + 0.01, "exceeds the block by " + (right - end));
                    last = right;
                }
            }
            verify(status.width <= 128);
        }
    }

    function test_long_names_and_folders_are_elided() {
        const [row] = make({ name: "n".repeat(300), folder: "/srv/" + "d".repeat(300) });
        const details = ViewInspector.first(row, "ServiceDetails");
        const elided = ViewInspector.all(details, "ScaledText").filter(text => text.truncated);
        compare(elided.map(text => text.elide), [Text.ElideRight, Text.ElideMiddle]);
    }

    function test_texts_are_plain() {
        const [row] = make({ name: "<b>x</b>", folder: "/<i>y</i>" });
        for (const text of ViewInspector.all(row, "QQuickText"))
            compare(text.textFormat, Text.PlainText);
        verify(ViewInspector.text(row, "<b>x</b>"));
    }

    function test_accessible_name() {
        const [row] = make({}, { isPinned: true });
        compare(ViewInspector.roleAndName(row), "ListItem: \u2068shop\u2069, Vite, localhost:5173, online, 12 ms, pinned");
    }
}
