import QtQuick
import QtTest
import Portolan
import PortolanTest

ViewTest {
    id: root

    name: "HeaderView"

    Component {
        id: benchComponent

        StoreBench {}
    }

    Component {
        id: component

        HeaderView {
            width: 384
            loginItem: FakeLoginItem {}
        }
    }

    SignalSpy {
        id: detaches

        signalName: "detach"
    }

    function make(services, properties) {
        const bench = keep(benchComponent);
        bench.find(Samples.services(services ?? []));
        const header = createTemporaryObject(component, root, Object.assign({
            store: bench.store
        }, properties));
        header.objectName = "header";
        detaches.target = header;
        detaches.clear();
        return [header, bench];
    }

    function test_bar() {
        const [header] = make();
        compare(header.height, 52);
        compare(header.color, Theme.elevated);
        const line = ViewInspector.all(header, "QQuickRectangle").find(r => r.height === 1);
        compare(frame(line, header), "0 51 384 1");
        compare(line.color, Theme.border);
    }

    function test_brand() {
        const [header] = make();
        const mark = ViewInspector.first(header, "BrandMark");
        compare(frame(mark, header), "14 14 24 24");
        compare(mark.radius, 7);
        compare(mark.color, Theme.textStrong);
        const figure = ViewInspector.first(mark, "PortolanShape");
        compare(frame(figure, mark), "5 5 14 14");
        compare(figure.color, Theme.canvas);
        const title = ViewInspector.text(header, "Portolan");
        compare(ViewInspector.style(title), "15 600 system #ededed -0.2");
        compare(title.mapToItem(header, 0, 0).x, 14 + 24 + 8);
        fuzzyCompare(centre(title, header).y, 26, 0.5);
        compare(ViewInspector.roleAndName(title), "StaticText: Portolan");
    }

    function test_leading_inset() {
        const [header] = make([], {
            leadingInset: 70
        });
        compare(ViewInspector.first(header, "BrandMark").x, 84);
    }

    function test_controls_stand_in_order() {
        const [header] = make([], {
            canDetach: true
        });
        const refresh = ViewInspector.named(header, "Refresh");
        const detach = ViewInspector.named(header, "Open in window");
        const settings = ViewInspector.named(header, "Settings");
        const badge = ViewInspector.first(header, "CountBadge");
        compare(frame(refresh, header), "342 12 28 28");
        compare(frame(detach, header), "306 12 28 28");
        compare(frame(settings, header), "270 12 28 28");
        compare(badge.mapToItem(header, badge.width, 0).x, 262);
        compare(centre(badge, header).y, 26);
        compare(ViewInspector.symbols(header), ["slider.horizontal.3", "macwindow", "arrow.clockwise"]);
        const symbol = ViewInspector.symbol(settings, "slider.horizontal.3");
        compare(symbol.size, 12.5);
        compare(symbol.weight, Font.DemiBold);
        compare(symbol.color, Theme.textMuted);
    }

    function test_without_detach() {
        const [header] = make();
        compare(ViewInspector.symbols(header), ["slider.horizontal.3", "arrow.clockwise"]);
        compare(frame(ViewInspector.named(header, "Settings"), header), "306 12 28 28");
    }

    function test_badge_data() {
        return [
            { tag: "none", services: [], text: "0/0", color: Theme.textFaint },
            { tag: "one of three", services: [{ port: 1, health: "healthy" }, { port: 2 }, { port: 3 }], text: "1/3", color: Theme.online },
            { tag: "none of one", services: [{ port: 1, health: "unreachable" }], text: "0/1", color: Theme.textFaint }
        ];
    }

    function test_badge(data) {
        const [header] = make(data.services);
        const badge = ViewInspector.first(header, "CountBadge");
        const text = ViewInspector.text(badge, data.text);
        const dot = ViewInspector.first(badge, "Dot");
        compare(ViewInspector.style(text), "12 500 system #c7c7c7");
        compare(dot.color, data.color);
        compare(dot.radius, 3);
        compare(frame(dot, badge), "9 " + (badge.height / 2 - 3) + " 6 6");
        compare(text.mapToItem(badge, 0, 0).x, 9 + 6 + 6);
        compare(text.mapToItem(badge, 0, 0).y, 5);
        compare(badge.width, 9 + 6 + 6 + text.width + 9);
        compare(badge.height, 5 + text.height + 5);
        compare(badge.radius, badge.height / 2);
        compare(badge.color, Theme.card);
        compare(badge.borderColor, Theme.border);
        compare(ViewInspector.roleAndName(badge), "StaticText: " + data.text);
    }

    function test_detaches() {
        const [header] = make([], {
            canDetach: true
        });
        mouseClick(ViewInspector.named(header, "Open in window"));
        compare(detaches.count, 1);
    }

    function test_refresh_turns_while_scanning() {
        const [header, bench] = make();
        verify(!ViewInspector.first(header, "Spinner"));
        mouseClick(ViewInspector.named(header, "Refresh"));
        verify(bench.store.isScanning);
        const spinner = ViewInspector.first(header, "Spinner");
        fuzzyCompare(spinner.width, 16 * 0.7, 0.01);
        fuzzyCompare(centre(spinner, header).x, 356, 0.5);
        fuzzyCompare(centre(spinner, header).y, 26, 0.5);
        compare(ViewInspector.symbols(header), ["slider.horizontal.3"]);
        bench.finishScan([]);
        verify(!ViewInspector.first(header, "Spinner"));
        compare(ViewInspector.symbols(header), ["slider.horizontal.3", "arrow.clockwise"]);
    }

    function test_refresh_keeps_the_focus_over_a_scan() {
        const [header, bench] = make();
        const refresh = ViewInspector.named(header, "Refresh");
        refresh.forceActiveFocus();
        keyClick(Qt.Key_Return);
        verify(bench.store.isScanning);
        verify(refresh.activeFocus);
        verify(ViewInspector.first(header, "FocusRing"));
        bench.finishScan([]);
        verify(refresh.activeFocus);
    }
}
