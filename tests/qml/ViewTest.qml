import QtQuick
import QtTest
import PortolanTest

// What the tests of the views share: a window to stand in, and no warning from any view.
TestCase {
    id: root

    // Where `item` is in `view`, as "x y width height".
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

    // The middle of `item` in `view`.
    function centre(item: Item, view: Item): point {
        return item.mapToItem(view, item.width / 2, item.height / 2);
    }

    function point(item: Item) {
        mouseMove(item, item.width / 2, item.height / 2);
    }

    function leave() {
        mouseMove(root, root.width - 1, root.height - 1);
    }

    visible: true
    // What a test's views live on has to outlive them: a temporary object goes before those made after it.
    property var kept: []

    function keep(component: Component, properties: var): QtObject {
        const object = component.createObject(root, properties ?? {});
        root.kept.push(object);
        return object;
    }

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
