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
        settled(list);
        return list;
    }

    // Every row is where it belongs and fully there.
    function settled(list) {
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
        compare(label.y, 2);
        compare(ViewInspector.texts(label), ["SERVICES", "3"]);
        const title = ViewInspector.text(label, "SERVICES");
        const count = ViewInspector.text(label, "3");
        compare(ViewInspector.style(title), "10 600 system #5c5c5c 0.8");
        compare(ViewInspector.style(count), "10 600 system #5c5c5c");
        compare(title.x, 16);
        compare(count.x + count.width, 384 - 16);
        compare(label.height, title.height + 8);
        compare(view(list).y, 2 + label.height);
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

    function test_a_refresh_touches_nothing_that_stays() {
        const list = make(services(1, 2, 3, 4));
        const before = rows(list);
        const pointed = before[1];
        point(pointed);
        pointed.forceActiveFocus();
        for (let i = 0; i < 5; ++i) {
            bench.find(Samples.services([1, 2, 3, 4].map(port => ({ port: port, name: "s" + port, pid: port, folder: "/srv", uptime: 65 + i, health: i % 2 ? "healthy" : "unreachable" }))));
            waitForRendering(list);
            verify(rows(list).every((row, n) => row === before[n]));
            verify(pointed.hovering);
            verify(pointed.activeFocus);
        }
    }

    function test_an_open_menu_survives_a_refresh_that_moves_its_row() {
        const list = make(services(10, 20, 30));
        mouseClick(row(list, "s20"), 100, 20, Qt.RightButton);
        const menu = ViewInspector.first(root.Window.contentItem, "PopupMenu");
        verify(menu);
        bench.find(services(1, 2, 3, 10, 20, 30));
        settled(list);
        compare(ViewInspector.first(root.Window.contentItem, "PopupMenu"), menu);
        const entry = ViewInspector.text(menu, "Copy Port");
        mouseClick(entry);
        compare(actions.calls, ["copyPort 20-20"]);
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
        settled(list);
        verify(Date.now() - start >= 170);
        verify(moves > 1, "in steps");
        compare(below.y, oldY + added.height + 8);
    }

    function test_a_leaving_row_fades_and_takes_no_clicks() {
        const list = make(services(10, 20));
        const leaving = row(list, "s10");
        bench.find(services(20));
        tryVerify(() => !leaving.enabled);
        verify(leaving.opacity > 0);
        mouseClick(leaving, 100, 20);
        mouseClick(leaving, 100, 20, Qt.RightButton);
        compare(actions.calls.filter(call => call.endsWith("10-10")), []);
        verify(!ViewInspector.first(root.Window.contentItem, "ServiceMenu"));
        settled(list);
        compare(names(list), ["s20"]);
    }

    function test_a_leaving_row_takes_its_menu_along() {
        const list = make(services(10, 20));
        mouseClick(row(list, "s10"), 100, 20, Qt.RightButton);
        verify(ViewInspector.first(root.Window.contentItem, "ServiceMenu"));
        bench.find(services(20));
        tryVerify(() => !ViewInspector.first(root.Window.contentItem, "ServiceMenu"));
    }

    function test_many_changes_leave_every_row_whole() {
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
        settled(list);
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

    function test_what_moves_or_goes_does_not_scroll_the_rest_data() {
        return [
            { tag: "a row in sight is pinned", pinned: 35, current: 0 },
            { tag: "the current row in sight is pinned", pinned: 35, current: 35 },
            { tag: "a row out of sight is pinned", pinned: 150, current: 0 },
            { tag: "the current row out of sight is pinned", pinned: 1, current: 1 },
            { tag: "the current row in sight goes", removed: 35, current: 35 },
            { tag: "the current row out of sight goes", removed: 0, current: 0 }
        ];
    }

    function test_what_moves_or_goes_does_not_scroll_the_rest(data) {
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

    function test_two_hundred_rows_cost_only_what_is_seen() {
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
