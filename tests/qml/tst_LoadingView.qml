// SPDX-License-Identifier: MIT
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
        compareTable([
            ["texts", ViewInspector.texts(view), ["Scanning ports\u2026"]],
            ["text style", ViewInspector.style(text), "12 400 system #8f8f8f"],
            ["text role", ViewInspector.roleAndName(text), "StaticText: Scanning ports\u2026"],
            ["spinner top", spinner.mapToItem(view, 0, 0).y, 44],
            ["text top", text.mapToItem(view, 0, 0).y, 44 + spinner.height + 10],
            ["height", view.height, 44 + spinner.height + 10 + text.height + 44],
            ["spinner centre", centre(spinner, view).x, 192],
            ["text centre", centre(text, view).x, 192, 0.5]
        ]);
    }

    function test_is_animated_only_while_visible() {
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
