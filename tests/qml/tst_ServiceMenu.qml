// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Portolan
import PortolanTest

MenuTest {
    id: root

    name: "ServiceMenu"

    Component {
        id: actionsComponent

        RecordedActions {}
    }

    Component {
        id: component

        ServiceRowView {
            width: 356
            isPinned: false
        }
    }

    SignalSpy {
        id: pins

        signalName: "togglePin"
    }

    function open(values, properties) {
        const actions = keep(actionsComponent);
        const row = createTemporaryObject(component, root, Object.assign({
            service: Samples.service(values),
            actions: actions
        }, properties));
        pins.target = row;
        pins.clear();
        mouseClick(row, 100, 30, Qt.RightButton);
        return [row, actions];
    }

    function test_items_with_a_folder() {
        open({ folder: "/tmp/x" });
        compare(outline(), "Open in Browser, Copy URL, Copy Port, -, Pin to Top, -, Reveal in Finder, Open in Editor, Open in Terminal, -, Stop Server");
    }

    function test_items_without_a_folder() {
        open({}, { isPinned: true });
        compare(outline(), "Open in Browser, Copy URL, Copy Port, -, Unpin, -, Stop Server");
    }

    function test_calls_data() {
        return [
            { tag: "Open in Browser", calls: ["openInBrowser 4242-3000"] },
            { tag: "Copy URL", calls: ["copyURL 4242-3000"] },
            { tag: "Copy Port", calls: ["copyPort 4242-3000"] },
            { tag: "Reveal in Finder", calls: ["revealInFinder 4242-3000"] },
            { tag: "Open in Editor", calls: ["openInEditor 4242-3000"] },
            { tag: "Open in Terminal", calls: ["openInTerminal 4242-3000"] },
            { tag: "Pin to Top", calls: [], pins: 1 },
            { tag: "Stop Server", calls: ["stop 4242-3000"] }
        ];
    }

    function test_calls(data) {
        const [row, actions] = open({ folder: "/tmp/x" });
        mouseClick(entry(data.tag));
        tryVerify(closed);
        compare(actions.calls, data.calls);
        compare(pins.count, data.pins ?? 0);
        verify(!row.copied); // only the button shows the check mark
    }

    function test_the_overflow_button_opens_the_same_menu() {
        const [row] = open({ folder: "/tmp/x" });
        const outlined = outline();
        keyClick(Qt.Key_Escape);
        tryVerify(closed);
        point(row);
        mouseClick(rowButton(row, "More"));
        compare(outline(), outlined);
    }

    function test_opens_where_the_pointer_is() {
        open({});
        const panel = ViewInspector.first(menu(), "RoundedRect");
        compare(Qt.point(panel.x, panel.y), Qt.point(100, 30));
    }

    function test_opens_by_keys_data() {
        return [
            { tag: "menu key", key: Qt.Key_Menu, modifiers: Qt.NoModifier },
            { tag: "shift F10", key: Qt.Key_F10, modifiers: Qt.ShiftModifier }
        ];
    }

    function test_opens_by_keys(data) {
        const [row, actions] = open({});
        keyClick(Qt.Key_Escape);
        tryVerify(closed);
        row.forceActiveFocus();
        keyClick(data.key, data.modifiers);
        compare(menu().current.text, "Open in Browser");
        keyClick(Qt.Key_Up);
        compare(menu().current.text, "Stop Server");
        keyClick(Qt.Key_Space);
        compare(actions.calls, ["stop 4242-3000"]);
        verify(row.activeFocus);
    }

    function test_the_overflow_button_opens_it_by_keyboard() {
        const [row] = open({});
        keyClick(Qt.Key_Escape);
        tryVerify(closed);
        row.forceActiveFocus();
        tryVerify(() => ViewInspector.named(row, "More"));
        ViewInspector.named(row, "More").forceActiveFocus();
        keyClick(Qt.Key_Return);
        compare(menu().current.text, "Open in Browser");
        keyClick(Qt.Key_Escape);
        tryVerify(closed);
        mouseClick(rowButton(row, "More"));
        verify(menu() && !menu().current, "a click does not select an entry");
    }

    function test_a_resting_pointer_chooses_nothing_when_keys_open_it() {
        const [row, actions] = open({});
        const last = entry("Stop Server");
        const at = last.mapToItem(root, last.width / 2, last.height / 2);
        keyClick(Qt.Key_Escape);
        tryVerify(closed);
        mouseMove(root, at.x, at.y);
        row.forceActiveFocus();
        keyClick(Qt.Key_F10, Qt.ShiftModifier);
        const again = entry("Stop Server").mapToItem(root, 0, 0);
        mouseMove(root, at.x, again.y + 5); // where that entry is now
        keyClick(Qt.Key_Escape);
        tryVerify(closed);
        keyClick(Qt.Key_F10, Qt.ShiftModifier);
        waitForRendering(root.Window.contentItem);
        wait(50);
        compare(menu().current.text, "Open in Browser");
        mouseMove(root, at.x + 2, again.y + 6);
        compare(menu().current.text, "Stop Server");
        compare(actions.calls, []);
    }

    function test_style() {
        open({ folder: "/tmp/x" });
        compare(ViewInspector.style(ViewInspector.text(menu(), "Copy URL")), "12.5 400 system #ededed");
        compare(ViewInspector.style(ViewInspector.text(menu(), "Stop Server")), "12.5 400 system #f43f5e");
        const panel = ViewInspector.first(menu(), "RoundedRect");
        compare(panel.borderColor, Theme.borderStrong);
        compare(panel.color.a, 1);
        for (const one of ViewInspector.all(menu(), "MenuEntry"))
            verify(one.mapToItem(panel, one.width, 0).x <= panel.width);
    }

    function test_keeps_its_row_active() {
        const [row] = open({});
        leave();
        verify(row.isActive);
        keyClick(Qt.Key_Escape);
        tryVerify(closed);
        verify(!row.isActive);
    }

    function test_blocks_clicks_outside() {
        const [row, actions] = open({});
        mouseClick(row, 20, 60);
        tryVerify(closed);
        compare(actions.calls, []);
    }
}
