import QtQuick
import QtTest
import Portolan
import PortolanTest

// What the tests of menus share: a menu is seen in the window and asked for by what it shows.
ViewTest {
    id: root

    function menu(): Item {
        return Look.first(root.Window.contentItem, "PopupMenu");
    }

    function entries(): list<string> {
        return Look.texts(root.menu());
    }

    function entry(text: string): Item {
        return Look.all(root.menu(), "MenuEntry").find(e => e.text === text) ?? null;
    }

    function isChecked(text: string): bool {
        return Look.symbol(root.entry(text), "checkmark") !== null;
    }

    // Entries and separators from top to bottom.
    function outline(): string {
        return Look.all(root.menu(), "MenuEntry").concat(Look.all(root.menu(), "MenuSeparator"))
            .sort((a, b) => a.y - b.y).map(item => item.text ?? "-").join(", ");
    }

    function closed(): bool {
        return root.menu() === null;
    }
}
