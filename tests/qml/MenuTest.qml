// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Portolan
import PortolanTest

// The base of the tests of menus.
ViewTest {
    id: root

    function menu(): Item {
        return ViewInspector.first(root.Window.contentItem, "PopupMenu");
    }

    function entries(): list<string> {
        return ViewInspector.texts(root.menu());
    }

    function entry(text: string): Item {
        return ViewInspector.all(root.menu(), "MenuEntry").find(e => e.text === text) ?? null;
    }

    function isChecked(text: string): bool {
        return ViewInspector.symbol(root.entry(text), "checkmark") !== null;
    }

    // The entries, and "-" for separators, from top to bottom.
    function outline(): string {
        return ViewInspector.all(root.menu(), "MenuEntry").concat(ViewInspector.all(root.menu(), "MenuSeparator"))
            .sort((a, b) => a.y - b.y).map(item => item.text ?? "-").join(", ");
    }

    function closed(): bool {
        return root.menu() === null;
    }
}
