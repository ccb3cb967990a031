// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Portolan
import PortolanTest

ViewTest {
    id: root

    name: "ServiceListView"

    Component {
        id: benchComponent

        StoreBench {}
    }

    Component {
        id: actionsComponent

        RecordedActions {}
    }

    Component {
        id: modelComponent

        VisibleServicesModel {}
    }

    Component {
        id: component

        ServiceListView {
            width: 384
        }
    }

    property StoreBench bench
    property RecordedActions actions

    function make(services) {
        root.bench = keep(benchComponent);
        root.actions = keep(actionsComponent);
        root.bench.find(services);
        const list = createTemporaryObject(component, root, {
            services: keep(modelComponent, {
                store: root.bench.store
            }),
            actions: root.actions
        });
        list.height = Qt.binding(() => list.implicitHeight);
        waitForRendering(list);
        waitForTransitions(list);
        wait(200); // rows take presses only after they have stood still for a while
        return list;
    }

    // Waits until all transitions have finished.
    function waitForTransitions(list) {
        tryVerify(() => {
            const shown = rows(list);
            return shown.length > 0 && shown.every((row, i) => row.opacity === 1 && (i === 0 || row.y === shown[i - 1].y + shown[i - 1].height + 8));
        });
    }

    function view(list) {
        return ViewInspector.first(list, "ServiceRows");
    }

    function rows(list) {
        return ViewInspector.all(list, "ServiceRowView").filter(row => row.enabled).sort((a, b) => a.y - b.y);
    }

    function seen(list) {
        return rows(list).filter(row => {
            const top = row.mapToItem(view(list), 0, 0).y;
            return top + row.height > 0 && top < view(list).height;
        }).map(row => row.service.displayName);
    }

    function names(list) {
        return rows(list).map(row => row.service.displayName);
    }

    function row(list, name) {
        return rows(list).find(row => row.service.displayName === name) ?? null;
    }

    function services(...ports) {
        return Samples.services(ports.map(port => ({ port: port, name: "s" + port, pid: port, folder: "/srv/s" + port, uptime: 60 })));
    }

    function test_label() {
        const list = make(Samples.ordinary(3));
        const label = ViewInspector.first(list, "SectionLabel");
        const title = ViewInspector.text(label, "SERVICES");
        const count = ViewInspector.text(label, "3");
        compareTable([
            ["texts", ViewInspector.texts(label), ["SERVICES", "3"]],
            ["y", label.y, 2],
            ["height", label.height, title.height + 8],
            ["title style", ViewInspector.style(title), "10 600 system #5c5c5c 0.8"],
            ["title x", title.x, 16],
            ["count style", ViewInspector.style(count), "10 600 system #5c5c5c"],
            ["count right", count.x + count.width, 384 - 16],
            ["rows y", view(list).mapToItem(list, 0, 0).y, 2 + label.height]
        ]);
    }

    function test_rows() {
        const list = make(Samples.ordinary(5));
        compare(names(list), ["storefront", "handbook", "dashboard", "payments-api", "java"]);
        compare(frame(view(list), list).split(" ")[0], "14");
        for (const row of rows(list)) {
            compare(row.x, 0);
            compare(row.width, 384 - 28);
            compare(row.trailingWidth, 128);
            compare(row.height, row.implicitHeight);
        }
        compare(view(list).bottomMargin, 12);
        compare(ViewInspector.roleAndName(view(list)), "List: Services");
    }

    function test_height_data() {
        return [
            { tag: "few", count: 1, height: 300 },
            { tag: "many", count: 200, height: 470 }
        ];
    }

    function test_height(data) {
        const list = make(Samples.ordinary(data.count));
        compare(view(list).height, data.height);
    }

    function test_height_follows_the_rows_between() {
        const list = make(Samples.ordinary(4));
        const last = rows(list)[3];
        compare(view(list).height, last.y + last.height + 12);
    }

    function test_a_refresh_keeps_rows_hover_and_focus() {
        const list = make(services(1, 2, 3, 4));
        const before = rows(list);
        const hovered = before[1];
        point(hovered);
        hovered.forceActiveFocus();
        for (let i = 0; i < 5; ++i) {
            bench.find(Samples.services([1, 2, 3, 4].map(port => ({ port: port, name: "s" + port, pid: port, folder: "/srv", uptime: 65 + i, health: i % 2 ? "healthy" : "unreachable" }))));
            waitForRendering(list);
            verify(rows(list).every((row, n) => row === before[n]));
            verify(hovered.hovering);
            verify(hovered.activeFocus);
        }
    }

    function test_an_open_menu_survives_a_refresh_that_moves_its_row() {
        const list = make(services(10, 20, 30));
        mouseClick(row(list, "s20"), 100, 20, Qt.RightButton);
        const menu = ViewInspector.first(root.Window.contentItem, "PopupMenu");
        verify(menu);
        bench.find(services(1, 2, 3, 10, 20, 30));
        waitForTransitions(list);
        compare(ViewInspector.first(root.Window.contentItem, "PopupMenu"), menu);
        const entry = ViewInspector.text(menu, "Copy Port");
        mouseClick(entry);
        compare(actions.calls, ["copyPort 20-20"]);
    }

    function overlaps(list) {
        const shown = ViewInspector.all(list, "ServiceRowView").sort((a, b) => a.y - b.y);
        return shown.filter((row, i) => i > 0 && row.y < shown[i - 1].y + shown[i - 1].height).map(row => row.service.displayName);
    }

    function portsFrom(first, count) {
        return Array.from({ length: count }, (_, i) => first + i);
    }

    function test_a_cleared_search_leaves_no_row_under_another() {
        const list = make(services(...portsFrom(9000, 12)));
        root.bench.store.searchText = "9011";
        tryVerify(() => rows(list).length === 1);
        root.bench.store.searchText = "";
        tryVerify(() => rows(list).length > 1);
        waitForTransitions(list);
        compare(overlaps(list), []);
    }

    function test_a_row_that_comes_above_a_half_visible_one_does_not_scroll() {
        const list = make(services(...portsFrom(9010, 12)));
        const rowsView = view(list);
        rowsView.contentY = 40;
        root.bench.find(services(9000, ...portsFrom(9010, 12)));
        wait(400);
        waitForTransitions(list);
        verify(rowsView.contentY >= 40);
        compare(overlaps(list), []);
    }

    function test_a_focused_row_that_is_pushed_down_is_followed() {
        const list = make(services(9020));
        const focused = row(list, "s9020");
        focused.forceActiveFocus(Qt.TabFocusReason);
        root.bench.find(services(...portsFrom(9000, 12), 9020));
        tryVerify(() => rows(list).length > 1);
        waitForTransitions(list);
        compare(overlaps(list), []);
        verify(focused.activeFocus);
        verify(seen(list).includes("s9020"));
    }

    function test_rows_fade_in_and_the_others_slide() {
        const list = make(services(10, 20));
        const below = row(list, "s20");
        const oldY = below.y;
        let moves = 0;
        below.yChanged.connect(() => moves += 1);
        const start = Date.now();
        bench.find(services(10, 15, 20));
        tryVerify(() => row(list, "s15"));
        const added = row(list, "s15");
        verify(added.opacity < 1 || Date.now() - start >= 180);
        waitForTransitions(list);
        verify(Date.now() - start >= 170);
        verify(moves > 1, "the row must be animated");
        compare(below.y, oldY + added.height + 8);
    }

    function test_a_removed_row_fades_out_and_ignores_clicks() {
        const list = make(services(10, 20));
        const removed = row(list, "s10");
        bench.find(services(20));
        tryVerify(() => !removed.enabled);
        verify(removed.opacity > 0);
        mouseClick(removed, 100, 20);
        mouseClick(removed, 100, 20, Qt.RightButton);
        compare(actions.calls.filter(call => call.endsWith("10-10")), []);
        verify(!ViewInspector.first(root.Window.contentItem, "ServiceMenu"));
        waitForTransitions(list);
        compare(names(list), ["s20"]);
    }

    function test_a_removed_row_closes_its_menu() {
        const list = make(services(10, 20));
        mouseClick(row(list, "s10"), 100, 20, Qt.RightButton);
        verify(ViewInspector.first(root.Window.contentItem, "ServiceMenu"));
        bench.find(services(20));
        tryVerify(() => !ViewInspector.first(root.Window.contentItem, "ServiceMenu"));
    }

    function stopButton(list, name) {
        point(row(list, name));
        return rowButton(row(list, name), "Stop");
    }

    function test_a_press_on_a_row_that_has_just_come_counts_for_nobody() {
        const list = make(services(10, 20, 30));
        const place = centre(stopButton(list, "s10"), list);
        const next = row(list, "s20");
        const y = next.y;
        bench.store.removeService(bench.store.visible[0]);
        tryVerify(() => next.y < y);
        mouseClick(list, place.x, place.y);
        leave();
        tryCompare(next, "y", 0);
        mouseClick(list, place.x, place.y);
        compare(actions.calls, []);
        leave();
        wait(200);
        mouseClick(stopButton(list, "s20"));
        compare(actions.calls, ["stop 20-20"]);
    }

    function test_a_double_click_counts_once_data() {
        return [
            { tag: "Stop", call: "stop 10-10", at: list => centre(stopButton(list, "s10"), list) },
            { tag: "card", call: "openInBrowser 10-10", at: list => centre(row(list, "s10"), list) }
        ];
    }

    function test_a_double_click_counts_once(data) {
        const list = make(services(10, 20, 30));
        const place = data.at(list);
        mouseClick(list, place.x, place.y);
        mouseClick(list, place.x + 2, place.y);
        compare(actions.calls, [data.call]);
        wait(500);
        mouseClick(list, place.x, place.y);
        compare(actions.calls, [data.call, data.call]);
        leave();
        data.at(list);
        mouseClick(list, place.x, place.y);
        compare(actions.calls, [data.call, data.call, data.call]);
    }

    function test_a_key_that_stops_does_not_act_on_the_next_row() {
        const list = make(services(10, 20, 30));
        actions.stopRequested.connect(service => bench.store.removeService(service));
        stopButton(list, "s10").forceActiveFocus();
        for (let i = 0; i < 5; ++i) {
            keyClick(Qt.Key_Return);
            wait(100);
        }
        compare(actions.calls, ["stop 10-10"]);
        wait(500);
        keyClick(Qt.Key_Return);
        compare(actions.calls, ["stop 10-10", "openInBrowser 20-20"]);
    }

    function test_rows_are_complete_after_many_changes() {
        const list = make(services(1, 2, 3, 4, 5));
        let seed = 7;
        const random = () => (seed = (seed * 1103515245 + 12345) % 2147483648) / 2147483648;
        for (let i = 0; i < 40; ++i) {
            const ports = [1, 2, 3, 4, 5, 6, 7, 8].filter(() => random() < 0.6);
            bench.find(services(...(ports.length ? ports : [1])));
            wait(random() * 60);
        }
        bench.find(services(1, 3, 5, 7));
        tryCompare(root.view(list), "count", 4);
        waitForTransitions(list);
        compare(names(list), ["s1", "s3", "s5", "s7"]);
    }

    function test_arrow_keys_go_through_the_rows() {
        const list = make(Samples.ordinary(200));
        rows(list)[0].forceActiveFocus();
        for (let i = 1; i <= 30; ++i) {
            keyClick(Qt.Key_Down);
            const focused = root.Window.activeFocusItem;
            compare(focused.index, i);
            const top = focused.mapToItem(view(list), 0, 0).y;
            verify(top >= 0 && top + focused.height <= view(list).height);
        }
        keyClick(Qt.Key_Up);
        compare(root.Window.activeFocusItem.index, 29);
        for (const [key, index] of [[Qt.Key_End, 199], [Qt.Key_Home, 0]]) {
            keyClick(key);
            compare(root.Window.activeFocusItem.index, index);
        }
    }

    function test_a_refresh_does_not_scroll() {
        const list = make(Samples.ordinary(200));
        view(list).contentY = 3000;
        waitForRendering(list);
        const at = view(list).contentY;
        const before = seen(list);
        bench.find(Samples.ordinary(200));
        wait(250);
        compare(view(list).contentY, at);
        compare(seen(list), before);
    }

    function test_changes_do_not_scroll_data() {
        return [
            { tag: "a visible row is pinned", pinned: 35, current: 0 },
            { tag: "the visible current row is pinned", pinned: 35, current: 35 },
            { tag: "an invisible row is pinned", pinned: 150, current: 0 },
            { tag: "the invisible current row is pinned", pinned: 1, current: 1 },
            { tag: "the visible current row is removed", removed: 35, current: 35 },
            { tag: "the invisible current row is removed", removed: 0, current: 0 }
        ];
    }

    function test_changes_do_not_scroll(data) {
        const list = make(Samples.ordinary(200));
        view(list).makeCurrent(data.current);
        view(list).contentY = 3000;
        waitForRendering(list);
        const at = view(list).contentY;
        const top = seen(list)[0];
        const visible = bench.store.visible;
        if (data.pinned !== undefined)
            bench.store.togglePin(visible[data.pinned]);
        else
            bench.store.removeService(visible[data.removed]);
        wait(250);
        compare(view(list).contentY, at);
        compare(seen(list)[0], top);
    }

    function test_only_visible_rows_are_created() {
        const list = make(Samples.ordinary(200));
        compare(view(list).count, 200);
        verify(rows(list).length < 20, rows(list).length + " rows");
        view(list).positionViewAtEnd();
        tryVerify(() => row(list, "service-199"));
        const last = row(list, "service-199");
        view(list).contentY += 500;
        view(list).returnToBounds();
        tryVerify(() => last.mapToItem(view(list), 0, last.height).y === 470 - 12);
    }
}
