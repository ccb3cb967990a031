// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import PortolanTest

// The base of the tests of views. A warning of any view fails the test.
TestCase {
    id: root

    // The geometry of `item` in `view` as "x y width height".
    function frame(item: Item, view: Item): string {
        const r = item.mapToItem(view, 0, 0, item.width, item.height);
        return [r.x, r.y, r.width, r.height].map(n => Math.round(n * 100) / 100).join(" ");
    }

    function shownChildren(item: Item): var {
        const shown = [];
        for (let i = 0; i < item.children.length; ++i) {
            if (item.children[i].visible)
                shown.push(item.children[i]);
        }
        return shown;
    }

    // The centre of `item` in `view`.
    function centre(item: Item, view: Item): point {
        return item.mapToItem(view, item.width / 2, item.height / 2);
    }

    function point(item: Item) {
        mouseMove(item, item.width / 2, item.height / 2);
    }

    // A button of a row that shows its buttons, once it takes presses.
    function rowButton(row: Item, name: string): Item {
        tryVerify(() => ViewInspector.first(row, "RowActions")?.parent.opacity === 1);
        return ViewInspector.named(row, name);
    }

    function leave() {
        mouseMove(root, root.width - 1, root.height - 1);
    }

    // Checks rows of [what, actual, expected] or, for numbers, [what, actual, expected, tolerance].
    function compareTable(rows) {
        for (const [what, actual, expected, tolerance] of rows) {
            if (tolerance === undefined)
                compare(actual, expected, what);
            else
                fuzzyCompare(actual, expected, tolerance, what);
        }
    }

    // Objects that views depend on. They must outlive the views, but temporary objects are destroyed in the order of
    // their creation.
    property var kept: []

    function keep(component: Component, properties: var): QtObject {
        const object = component.createObject(root, properties ?? {});
        root.kept.push(object);
        return object;
    }

    visible: true
    when: windowShown
    width: 500
    height: 700

    function init() {
        failOnWarning(/.*/);
        root.kept.forEach(object => object.destroy());
        root.kept = [];
        root.leave();
    }
}
