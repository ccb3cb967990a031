// SPDX-License-Identifier: MIT
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

    function test_bar_and_brand() {
        const [header] = make();
        const line = ViewInspector.all(header, "QQuickRectangle").find(r => r.height === 1);
        const mark = ViewInspector.first(header, "BrandMark");
        const figure = ViewInspector.first(mark, "PortolanShape");
        const title = ViewInspector.text(header, "Portolan");
        compareTable([
            ["height", header.height, 52],
            ["colour", header.color, Theme.elevated],
            ["line", frame(line, header), "0 51 384 1"],
            ["line colour", line.color, Theme.border],
            ["mark", frame(mark, header), "14 14 24 24"],
            ["mark radius", mark.radius, 7],
            ["mark colour", mark.color, Theme.textStrong],
            ["figure", frame(figure, mark), "5 5 14 14"],
            ["figure colour", figure.color, Theme.canvas],
            ["title style", ViewInspector.style(title), "15 600 system #ededed -0.2"],
            ["title x", title.mapToItem(header, 0, 0).x, 14 + 24 + 8],
            ["title centre", centre(title, header).y, 26, 0.5],
            ["title role", ViewInspector.roleAndName(title), "StaticText: Portolan"]
        ]);
    }

    function test_leading_inset() {
        const [header] = make([], {
            leadingInset: 70
        });
        compare(ViewInspector.first(header, "BrandMark").x, 84);
    }

    function test_controls() {
        const [header] = make([], {
            canDetach: true
        });
        const settings = ViewInspector.named(header, "Settings");
        const badge = ViewInspector.first(header, "CountBadge");
        const symbol = ViewInspector.symbol(settings, "slider.horizontal.3");
        compareTable([
            ["refresh", frame(ViewInspector.named(header, "Refresh"), header), "342 12 28 28"],
            ["detach", frame(ViewInspector.named(header, "Open in window"), header), "306 12 28 28"],
            ["settings", frame(settings, header), "270 12 28 28"],
            ["badge right", badge.mapToItem(header, badge.width, 0).x, 262],
            ["badge centre", centre(badge, header).y, 26],
            ["symbols", ViewInspector.symbols(header), ["slider.horizontal.3", "macwindow", "arrow.clockwise"]],
            ["settings symbol size", symbol.size, 12.5],
            ["settings symbol weight", symbol.weight, Font.DemiBold],
            ["settings symbol colour", symbol.color, Theme.textMuted]
        ]);
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
        compareTable([
            ["text style", ViewInspector.style(text), "12 500 system #c7c7c7"],
            ["text x", text.mapToItem(badge, 0, 0).x, 9 + 6 + 6],
            ["text y", text.mapToItem(badge, 0, 0).y, 5],
            ["dot", frame(dot, badge), "9 " + (badge.height / 2 - 3) + " 6 6"],
            ["dot colour", dot.color, data.color],
            ["dot radius", dot.radius, 3],
            ["width", badge.width, 9 + 6 + 6 + text.width + 9],
            ["height", badge.height, 5 + text.height + 5],
            ["radius", badge.radius, badge.height / 2],
            ["colour", badge.color, Theme.card],
            ["border colour", badge.borderColor, Theme.border],
            ["role", ViewInspector.roleAndName(badge), "StaticText: " + data.text]
        ]);
    }

    function test_detaches() {
        const [header] = make([], {
            canDetach: true
        });
        mouseClick(ViewInspector.named(header, "Open in window"));
        compare(detaches.count, 1);
    }

    function test_shows_a_spinner_while_scanning() {
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

    function test_refresh_keeps_the_focus_during_a_scan() {
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
