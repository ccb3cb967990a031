import QtQuick
import QtTest
import Portolan
import PortolanTest

ViewTest {
    id: root

    name: "LoadingView"

    Component {
        id: component

        LoadingView {
            width: 384
        }
    }

    function test_geometry() {
        const view = createTemporaryObject(component, root);
        const spinner = ViewInspector.first(view, "Spinner");
        const text = ViewInspector.text(view, "Scanning ports\u2026");
        compare(ViewInspector.texts(view), ["Scanning ports\u2026"]);
        compare(ViewInspector.style(text), "12 400 system #8f8f8f");
        compare(spinner.mapToItem(view, 0, 0).y, 44);
        compare(text.mapToItem(view, 0, 0).y, 44 + spinner.height + 10);
        compare(view.height, 44 + spinner.height + 10 + text.height + 44);
        compare(centre(spinner, view).x, 192);
        fuzzyCompare(centre(text, view).x, 192, 0.5);
        compare(ViewInspector.roleAndName(text), "StaticText: Scanning ports\u2026");
    }

    function test_turns_only_while_shown() {
        const view = createTemporaryObject(component, root);
        const spinner = ViewInspector.first(view, "Spinner");
        const start = spinner.step;
        tryVerify(() => spinner.step >= start + 3);
        view.visible = false;
        const end = spinner.step;
        wait(350);
        compare(spinner.step, end);
    }
}
