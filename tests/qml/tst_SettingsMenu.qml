// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Portolan
import PortolanTest

MenuTest {
    id: root

    name: "SettingsMenu"

    Component {
        id: benchComponent

        StoreBench {}
    }

    Component {
        id: loginItemComponent

        FakeLoginItem {}
    }

    Component {
        id: component

        SettingsButton {
            x: 200
            y: 12
        }
    }

    function open(properties) {
        const bench = keep(benchComponent);
        const loginItem = keep(loginItemComponent, properties);
        const button = createTemporaryObject(component, root, {
            store: bench.store,
            loginItem: loginItem
        });
        mouseClick(button);
        return [button, bench, loginItem];
    }

    function choose(text) {
        mouseClick(entry(text));
        tryVerify(closed);
    }

    function test_items_in_order() {
        open();
        compare(entries(), ["Sort by", "Port", "Name", "Status", "Uptime", "Auto-refresh", "Launch at Login", "Refresh Now"]);
        compare(outline(), "Port, Name, Status, Uptime, Auto-refresh, Launch at Login, -, Refresh Now");
        compare(ViewInspector.roleAndName(menu()).split(":")[0], "PopupMenu");
        compare(ViewInspector.roleAndName(entry("Name")), "MenuItem: Name");
    }

    function test_offers_every_order() {
        const [, bench] = open();
        const labels = bench.store.sortOrders.map(order => order.label);
        compare(entries().slice(1, 1 + labels.length), labels);
    }

    function test_chooses_an_order_data() {
        return ["Port", "Name", "Status", "Uptime"].map(label => ({ tag: label }));
    }

    function test_chooses_an_order(data) {
        const [button, bench] = open();
        verify(isChecked("Port"));
        choose(data.tag);
        compare(bench.store.sortOrderId, data.tag.toLowerCase());
        mouseClick(button);
        for (const label of ["Port", "Name", "Status", "Uptime"])
            compare(isChecked(label), label === data.tag);
    }

    function test_switches_auto_refresh() {
        const [button, bench] = open();
        verify(isChecked("Auto-refresh"));
        choose("Auto-refresh");
        compare(bench.store.autoRefresh, false);
        mouseClick(button);
        verify(!isChecked("Auto-refresh"));
    }

    function test_launch_at_login_shows_the_actual_state_data() {
        return [
            { tag: "on", enabled: false, mayChange: true, shown: true },
            { tag: "off", enabled: true, mayChange: true, shown: false },
            { tag: "fails on", enabled: false, mayChange: false, shown: false },
            { tag: "fails off", enabled: true, mayChange: false, shown: true }
        ];
    }

    function test_launch_at_login_shows_the_actual_state(data) {
        const [button, , loginItem] = open({
            enabled: data.enabled,
            mayChange: data.mayChange
        });
        compare(isChecked("Launch at Login"), data.enabled);
        choose("Launch at Login");
        compare(loginItem.enabled, data.shown);
        mouseClick(button);
        compare(isChecked("Launch at Login"), data.shown);
    }

    function test_launch_at_login_is_read_when_the_menu_opens() {
        const [button, , loginItem] = open();
        verify(!isChecked("Launch at Login"));
        keyClick(Qt.Key_Escape);
        tryVerify(closed);
        loginItem.enabled = true;
        mouseClick(button);
        verify(isChecked("Launch at Login"));
        choose("Launch at Login");
        compare(loginItem.enabled, false);
    }

    function test_refreshes_now() {
        const [, bench] = open();
        choose("Refresh Now");
        verify(bench.store.isScanning);
        bench.finishScan([]);
    }

    function test_keyboard_navigation() {
        const [button] = open();
        verify(!menu().current);
        for (const text of ["Port", "Name", "Status", "Uptime", "Auto-refresh", "Launch at Login", "Refresh Now", "Port"]) {
            keyClick(Qt.Key_Down);
            compare(menu().current.text, text);
        }
        keyClick(Qt.Key_Up);
        compare(menu().current.text, "Refresh Now");
        keyClick(Qt.Key_Home);
        compare(menu().current.text, "Port");
        keyClick(Qt.Key_End);
        compare(menu().current.text, "Refresh Now");
        keyClick(Qt.Key_Backtab);
        compare(menu().current.text, "Launch at Login");
        keyClick(Qt.Key_Escape);
        tryVerify(closed);
    }

    function test_keyboard_selection_restores_the_focus() {
        const [button, bench] = open();
        keyClick(Qt.Key_Escape);
        tryVerify(closed);
        button.forceActiveFocus();
        keyClick(Qt.Key_Space);
        compare(menu().current.text, "Port");
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        compare(bench.store.sortOrderId, "name");
        tryVerify(closed);
        verify(button.activeFocus);
    }

    function test_follows_the_pointer() {
        open();
        waitForRendering(menu());
        point(entry("Status"));
        compare(menu().current.text, "Status");
        point(entry("Uptime"));
        compare(menu().current.text, "Uptime");
        keyClick(Qt.Key_Down);
        compare(menu().current.text, "Auto-refresh");
        leave();
        verify(menu());
    }

    function test_a_click_outside_only_closes_it() {
        const [button] = open();
        mouseClick(button);
        tryVerify(closed);
    }

    function test_stays_inside_the_window() {
        const [button] = open();
        keyClick(Qt.Key_Escape);
        tryVerify(closed);
        button.x = root.width - 28;
        button.y = root.height - 28;
        mouseClick(button);
        const panel = ViewInspector.first(menu(), "RoundedRect");
        verify(panel.x >= 0 && panel.x + panel.width <= root.Window.width);
        verify(panel.y >= 0 && panel.y + panel.height <= button.y);
    }
}
