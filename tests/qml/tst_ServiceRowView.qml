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

    function test_card() {
        const [row] = make();
        compare(frame(card(row), row), frame(row, row));
        compare(card(row).radius, 10);
        compare(card(row).color, Theme.card);
        compare(card(row).borderColor, Theme.border);
        const details = ViewInspector.first(row, "ServiceDetails");
        compare(details.mapToItem(row, 0, 0).y, 10);
        compare(row.height, details.height + 20);
    }

    function test_tile() {
        const [row] = make();
        const tile = ViewInspector.first(row, "ServiceTile");
        compare(frame(tile, row), "12 " + Math.round((row.height - 38) / 2) + " 38 38");
        compare(tile.radius, 9);
        compare(tile.color, Theme.card);
        compare(tile.borderColor, Theme.border);
        const symbol = ViewInspector.symbol(tile, "bolt.fill");
        compare(centre(symbol, tile), Qt.point(19, 19));
        compare(symbol.size, 15);
        compare(symbol.weight, Font.DemiBold);
        compare(symbol.color, Qt.rgba(183 / 255, 148 / 255, 246 / 255, 1));
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

    function test_gaps() {
        const [row] = make({}, { isPinned: true });
        const right = item => item.mapToItem(row, item.width, 0).x;
        const left = item => item.mapToItem(row, 0, 0).x;
        const gap = (a, b) => Math.round((left(b) - right(a)) * 100) / 100;
        const pin = ViewInspector.symbol(row, "pin.fill");
        compare(pin.size, 8.5);
        compare(pin.weight, Font.Normal);
        compare(pin.color, Theme.accent);
        compare(gap(pin, ViewInspector.text(row, "shop")), 6);
        compare(gap(ViewInspector.text(row, "shop"), ViewInspector.text(row, "VITE")), 6);
        compare(gap(ViewInspector.text(row, "localhost:5173"), ViewInspector.text(row, "\u00b7")), 5);
        compare(gap(ViewInspector.text(row, "\u00b7"), ViewInspector.text(row, "pid 4242")), 5);
        const folder = ViewInspector.symbol(row, "folder");
        compare(folder.size, 9);
        compare(folder.color, Theme.textFaint);
        compare(gap(folder, ViewInspector.text(row, "/srv/shop")), 4);
        for (const [name, text] of [["clock", "1h 0m"], ["cpu", "3%"], ["memorychip", "87 MB"]]) {
            const symbol = ViewInspector.symbol(row, name);
            compare(symbol.size, 8.5);
            compare(symbol.color, Theme.textFaint);
            compare(gap(symbol, ViewInspector.text(row, text)), 3);
        }
        compare(gap(ViewInspector.text(row, "1h 0m"), ViewInspector.symbol(row, "cpu")), 9);
        compare(gap(ViewInspector.text(row, "3%"), ViewInspector.symbol(row, "memorychip")), 9);
        compare(ViewInspector.first(row, "Metric").y, 1);
    }

    function test_unpinned_has_no_pin() {
        const [row] = make();
        verify(!ViewInspector.symbol(row, "pin.fill"));
        compare(ViewInspector.text(row, "shop").x, 0);
    }

    function test_what_is_absent_takes_no_line() {
        const [bare] = make();
        bare.service = Samples.service({ name: "shop", framework: "Vite", port: 5173 });
        compare(ViewInspector.texts(ViewInspector.first(bare, "ServiceDetails")), ["shop", "VITE", "localhost:5173", "\u00b7", "pid 4242"]);
        compare(ViewInspector.symbols(ViewInspector.first(bare, "ServiceDetails")), []);
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
        compare(label.color, data.color);
        compare(label.opacity, 0.9);
        compare(dot.color, data.color);
        compare(dot.width, 6);
        compare(dot.height, 6);
        compare(label.mapToItem(row, 0, 0).x - dot.mapToItem(row, 6, 0).x, 6);
        compare(label.mapToItem(row, label.width, 0).x, 480 - 12);
        fuzzyCompare(centre(status, row).y, row.height / 2, 0.5);
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
        // In the popover nothing of what is known about an ordinary server is left out.
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
        // Solid where the first button begins, and not to be told from the card around it.
        verify(fade.gradient.stops[1].position * fade.width <= 20 + 128 - 116);
        tryCompare(card(row), "color", Theme.cardHover);
        row.Window.window.color = Theme.canvas;
        waitForRendering(row);
        const picture = grabImage(row);
        compare(picture.pixel(356 - 40, 6), picture.pixel(20, 6));
    }

    function test_hover_cross_fades() {
        const [row] = make();
        point(row);
        verify(row.hovering);
        const start = Date.now();
        verify(ViewInspector.first(row, "StatusIndicator").opacity > 0); // on its way
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
        compare(actions.mapToItem(row, actions.width, 0).x, 480 - 12);
        compare(actions.width, 4 * 26 + 3 * 4);
        fuzzyCompare(centre(actions, row).y, row.height / 2, 0.5);
        const buttons = ViewInspector.all(actions, "PlainButton");
        compare(buttons.map(b => frame(b, actions)), ["0 0 26 26", "30 0 26 26", "60 0 26 26", "90 0 26 26"]);
        compare(buttons.map(b => b.name), ["Open", "Copy URL", "Stop", "More"]);
        compare(buttons.map(b => b.toolTip), ["Open", "Copy URL", "Stop", ""]);
        compare(ViewInspector.symbol(row, "stop.fill").color, Theme.offline);
        const more = ViewInspector.symbol(row, "ellipsis");
        compare(more.size, 12);
        compare(more.weight, Font.DemiBold);
        compare(more.color, Theme.textMuted);
        compare(ViewInspector.first(buttons[3], "RoundedRect").color, Qt.rgba(1, 1, 1, 0.04));
        compare(ViewInspector.first(buttons[3], "RoundedRect").radius, 7);
    }

    function button(row, name) {
        point(row);
        tryVerify(() => ViewInspector.named(row, name));
        return ViewInspector.named(row, name);
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
        mouseClick(button(row, "Copy URL"));
        const first = Date.now();
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

    function test_a_key_that_is_held_opens_one_page() {
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
            compare(root.Window.activeFocusItem.name, name);
            verify(row.isActive);
        }
        for (const name of ["Stop", "Copy URL", "Open"]) {
            keyClick(Qt.Key_Backtab);
            compare(root.Window.activeFocusItem.name, name);
        }
        keyClick(Qt.Key_Backtab);
        verify(row.activeFocus);
    }

    function test_the_last_button_is_met_first_from_behind() {
        const [row] = make();
        const after = createTemporaryObject(afterComponent, root);
        after.forceActiveFocus();
        keyClick(Qt.Key_Backtab);
        compare(root.Window.activeFocusItem.name, "More");
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

    function test_awkward_texts_stay_before_the_column_data() {
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

    function test_awkward_texts_stay_before_the_column(data) {
        for (const width of [356, 372, 452, 900]) {
            const [row] = make(data.values, { width: width, isPinned: true });
            const status = ViewInspector.first(row, "StatusIndicator");
            const end = width - 12 - Math.max(76, status.width) - 18;
            const details = ViewInspector.first(row, "ServiceDetails");
            for (const line of shownChildren(details)) {
                verify(line.height < 30, "one line high");
                let last = -1;
                for (const part of shownChildren(line).filter(part => part.width > 0)) {
                    const left = part.mapToItem(row, 0, 0).x;
                    const right = left + Math.min(part.width, part.paintedWidth ?? part.width);
                    verify(left >= last, "over its neighbour");
                    verify(right <= end + 0.01, "beyond its block by " + (right - end));
                    last = right;
                }
            }
            verify(status.width <= 128);
        }
    }

    function test_long_names_are_cut_and_long_folders_in_the_middle() {
        const [row] = make({ name: "n".repeat(300), folder: "/srv/" + "d".repeat(300) });
        const details = ViewInspector.first(row, "ServiceDetails");
        const cut = ViewInspector.all(details, "ScaledText").filter(text => text.truncated);
        compare(cut.map(text => text.elide), [Text.ElideRight, Text.ElideMiddle]);
    }

    function test_texts_are_plain() {
        const [row] = make({ name: "<b>x</b>", folder: "/<i>y</i>" });
        for (const text of ViewInspector.all(row, "QQuickText"))
            compare(text.textFormat, Text.PlainText);
        verify(ViewInspector.text(row, "<b>x</b>"));
    }

    function test_is_spoken() {
        const [row] = make({}, { isPinned: true });
        compare(ViewInspector.roleAndName(row), "ListItem: \u2068shop\u2069, Vite, localhost:5173, online, 12 ms, pinned");
    }
}
