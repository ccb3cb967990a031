// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Portolan
import PortolanTest

ViewTest {
    id: root

    name: "RootView"
    width: 700

    Component {
        id: benchComponent

        StoreBench {}
    }

    Component {
        id: actionsComponent

        RecordedActions {}
    }

    Component {
        id: loginItemComponent

        FakeLoginItem {}
    }

    Component {
        id: component

        RootView {}
    }

    SignalSpy {
        id: detaches

        signalName: "detach"
    }

    SignalSpy {
        id: menuRequests

        signalName: "windowMenuRequested"
    }

    property StoreBench bench
    property RecordedActions actions

    function make(presentation) {
        root.bench = keep(benchComponent);
        root.actions = keep(actionsComponent);
        root.actions.stopRequested.connect(service => root.bench.store.expectEnd(service));
        const view = createTemporaryObject(component, root, {
            store: root.bench.store,
            presentation: presentation ?? RootView.Popover,
            actions: root.actions,
            loginItem: keep(loginItemComponent)
        });
        view.width = view.implicitWidth;
        view.height = Qt.binding(() => view.implicitHeight);
        detaches.target = view;
        detaches.clear();
        waitForRendering(view);
        return view;
    }

    function part(view, type) {
        return ViewInspector.first(view, type);
    }

    function test_popover() {
        const view = make();
        compare(view.implicitWidth, 384);
        bench.find(Samples.ordinary(5));
        tryVerify(() => ViewInspector.all(view, "ServiceRowView").length === 5);
        compare(frame(part(view, "HeaderView"), view), "0 0 384 52");
        compare(frame(part(view, "SearchField"), view), "0 52 384 54");
        const content = part(view, "ContentArea");
        compare(content.y, 106);
        const footer = part(view, "FooterView");
        compare(footer.y, content.y + content.height);
        compare(footer.y + footer.height, view.height);
        compare(ViewInspector.all(view, "QQuickRectangle").find(r => r.width === view.width && r.height === view.height).color, Theme.canvas);
        verify(ViewInspector.named(view, "Open in window"));
    }

    function test_window() {
        const view = make(RootView.Window);
        compare(view.implicitWidth, 480);
        const strip = ViewInspector.all(view, "QQuickRectangle").find(r => r.height === 28);
        compare(frame(strip, view), "0 0 480 28");
        compare(strip.color, Theme.elevated);
        compare(part(view, "HeaderView").y, 28);
        verify(!ViewInspector.named(view, "Open in window"));
    }

    function test_title_bar() {
        const view = make(RootView.Window);
        view.leftButtons = ["close"];
        view.rightButtons = ["minimize", "maximize"];
        const bar = part(view, "TitleBar");
        waitForRendering(view);
        compare(ViewInspector.all(bar, "TitleButton").map(b => ViewInspector.roleAndName(b)), ["Button: Close", "Button: Minimize", "Button: Maximize"]);
        compare(ViewInspector.all(bar, "TitleButton").map(b => frame(b, bar)), ["8 2 28 24", "414 2 28 24", "444 2 28 24"]);
        compare(ViewInspector.symbols(bar), ["xmark", "minus", "square"]);
        menuRequests.target = view;
        menuRequests.clear();
        mouseClick(bar, 200, 14, Qt.RightButton);
        compare(menuRequests.count, 1);
    }

    function test_frame() {
        const view = make(RootView.Window);
        bench.find(Samples.ordinary(2));
        view.cornerRadius = 10;
        const picture = grabImage(view);
        const white = Qt.tint(Theme.canvas, Theme.borderStrong);
        fuzzyCompare(picture.red(0, 300), 255 * white.r, 2);
        fuzzyCompare(picture.red(479, 300), 255 * white.r, 2);
        verify(picture.red(240, 0) > 0);
        verify(picture.red(240, view.height - 1) > 0);
        const edges = ViewInspector.all(view, "ResizeEdge").map(edge => edge.modelData);
        compare(edges.sort((a, b) => a - b), [Qt.TopEdge, Qt.LeftEdge, Qt.TopEdge | Qt.LeftEdge, Qt.RightEdge, Qt.TopEdge | Qt.RightEdge, Qt.BottomEdge, Qt.BottomEdge | Qt.LeftEdge, Qt.BottomEdge | Qt.RightEdge].sort((a, b) => a - b));
        compare(ViewInspector.all(make(), "ResizeEdge").length, 0);
    }

    function test_detach() {
        const view = make();
        mouseClick(ViewInspector.named(view, "Open in window"));
        compare(detaches.count, 1);
    }

    function test_first_scan() {
        const view = make();
        bench.store.refresh();
        tryVerify(() => part(view, "LoadingView"));
        verify(!part(view, "EmptyStateView"));
        bench.finishScan(Samples.ordinary(1));
        tryVerify(() => ViewInspector.all(view, "ServiceRowView").length === 1);
        verify(!part(view, "LoadingView"));
    }

    function test_a_later_scan_shows_only_if_it_lasts() {
        const view = make();
        bench.find([]);
        tryVerify(() => part(view, "EmptyStateView"));
        const height = view.implicitHeight;
        const start = Date.now();
        bench.store.refresh();
        tryVerify(() => part(view, "LoadingView"));
        verify(Date.now() - start >= 290);
        verify(!part(view, "EmptyStateView"));
        compare(view.implicitHeight, height);
        bench.finishScan([]);
        tryVerify(() => part(view, "EmptyStateView"));
        compare(view.implicitHeight, height);
    }

    function test_a_scan_keeps_the_rows() {
        const view = make();
        bench.find(Samples.ordinary(2));
        bench.store.refresh();
        tryVerify(() => ViewInspector.all(view, "ServiceRowView").length === 2);
        verify(!part(view, "LoadingView"));
        bench.finishScan(Samples.ordinary(2));
    }

    function test_empty_states() {
        const view = make();
        verify(ViewInspector.text(view, "Nothing running"));
        bench.store.searchText = " ";
        tryVerify(() => ViewInspector.text(view, "No matches"));
        bench.store.searchText = "";
        bench.find(Samples.ordinary(5));
        bench.store.searchText = "unmatched";
        tryVerify(() => ViewInspector.text(view, "No matches"));
        compare(ViewInspector.all(view, "ServiceRowView").length, 0);
    }

    function test_search_is_bound_both_ways() {
        const view = make();
        bench.find(Samples.ordinary(5));
        keyClick(Qt.Key_K, Qt.ControlModifier);
        for (const key of "dash")
            keyClick(key);
        compare(bench.store.searchText, "dash");
        tryVerify(() => ViewInspector.texts(part(view, "SectionLabel"))[1] === "1");
        bench.store.searchText = "x";
        compare(part(view, "SearchField").text, "x");
        keyClick("y");
        compare(bench.store.searchText, "xy");
        bench.store.searchText = "";
        compare(part(view, "SearchField").text, "");
    }

    TextEdit {
        id: terminal
    }

    function test_a_pasted_line_break_becomes_a_blank() {
        const view = make();
        terminal.text = "dash\n";
        terminal.selectAll();
        terminal.copy();
        keyClick(Qt.Key_K, Qt.ControlModifier);
        keyClick(Qt.Key_V, Qt.ControlModifier);
        compare(bench.store.searchText, "dash ");
        compare(part(view, "SearchField").text, "dash ");
        keyClick("x");
        compare(bench.store.searchText, "dash x");
    }

    function test_shortcut_focuses_the_search_from_any_control() {
        const view = make();
        bench.find(Samples.ordinary(2));
        tryVerify(() => ViewInspector.first(view, "ServiceRowView"));
        for (const place of [ViewInspector.named(view, "Quit"), ViewInspector.first(view, "ServiceRowView"), ViewInspector.named(view, "Refresh")]) {
            place.forceActiveFocus();
            keyClick(Qt.Key_K, Qt.MetaModifier);
            verify(part(view, "SearchField").focused);
        }
    }

    function test_shortcut_focuses_the_search_from_a_menu() {
        const view = make();
        mouseClick(ViewInspector.named(view, "Settings"));
        verify(ViewInspector.first(root.Window.contentItem, "PopupMenu"));
        keyClick(Qt.Key_K, Qt.ControlModifier);
        verify(!ViewInspector.first(root.Window.contentItem, "PopupMenu"));
        verify(part(view, "SearchField").focused);
    }

    function test_focus_survives_refreshes() {
        const view = make();
        bench.find(Samples.ordinary(3));
        tryVerify(() => ViewInspector.all(view, "ServiceRowView").length === 3);
        for (const name of ["Refresh", "Settings", "Quit"]) {
            const control = ViewInspector.named(view, name);
            control.forceActiveFocus();
            bench.find(Samples.ordinary(4));
            bench.find(Samples.ordinary(3));
            verify(control.activeFocus);
        }
        mouseClick(ViewInspector.named(view, "Settings"));
        keyClick(Qt.Key_Down);
        const menu = ViewInspector.first(root.Window.contentItem, "PopupMenu");
        bench.find(Samples.ordinary(4));
        verify(ViewInspector.isShown(menu));
        compare(menu.current.text, "Port");
    }

    function test_tick() {
        const start = Date.now();
        const view = make();
        compare(view.tick, 0);
        tryVerify(() => view.tick === 1, 30000);
        verify(Date.now() - start > 4700);
    }

    function test_tick_stops_while_hidden() {
        const view = make();
        view.visible = false;
        wait(5300);
        compare(view.tick, 0);
    }

    function test_stopping() {
        const view = make();
        bench.find(Samples.ordinary(2));
        tryVerify(() => ViewInspector.all(view, "ServiceRowView").length === 2);
        const row = ViewInspector.all(view, "ServiceRowView")[0];
        const scans = bench.scans;
        point(row);
        const stop = rowButton(row, "Stop");
        wait(200);
        const start = Date.now();
        mouseClick(stop);
        compare(actions.calls, ["stop 49000-3000"]);
        compare(bench.store.services.length, 1);
        tryVerify(() => bench.scans === scans + 1);
        verify(Date.now() - start >= 1390);
        bench.finishScan(Samples.ordinary(2));
        tryVerify(() => ViewInspector.all(view, "ServiceRowView").length === 2);
    }

    function test_pinning() {
        const view = make();
        bench.find(Samples.ordinary(3));
        tryVerify(() => ViewInspector.all(view, "ServiceRowView").length === 3);
        const row = ViewInspector.all(view, "ServiceRowView").find(r => r.service.displayName === "dashboard");
        row.togglePin();
        verify(bench.store.visible[0].displayName === "dashboard");
        tryVerify(() => row.isPinned && row.y === 0);
    }

    function test_tab_order() {
        const view = make();
        bench.find(Samples.ordinary(3));
        tryVerify(() => ViewInspector.all(view, "ServiceRowView").length === 3);
        keyClick(Qt.Key_K, Qt.ControlModifier);
        const order = [];
        for (let i = 0; i < 11; ++i) {
            keyClick(Qt.Key_Tab);
            order.push(ViewInspector.roleAndName(root.Window.activeFocusItem).split(": ")[1].split(",")[0]);
        }
        compare(order, ["\u2068storefront\u2069", "Open", "Copy URL", "Stop", "More", "Quit", "Settings", "Open in window", "Refresh", "Search by name", "\u2068storefront\u2069"]);
        const back = [];
        for (let i = 0; i < 10; ++i) {
            keyClick(Qt.Key_Backtab);
            back.push(ViewInspector.roleAndName(root.Window.activeFocusItem).split(": ")[1].split(",")[0]);
        }
        compare(back, order.slice(0, -1).reverse());
    }
}
