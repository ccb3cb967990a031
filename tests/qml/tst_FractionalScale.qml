// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Portolan
import PortolanTest

// What a fractional scale must not cut off. CMakeLists.txt runs it at several scales.
ViewTest {
    id: root

    name: "FractionalScale"

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

        Rectangle {
            id: page

            property alias list: list
            property VisibleServicesModel services
            property ServiceActions actions

            width: 384
            height: 400
            color: Theme.canvas

            ServiceListView {
                id: list

                width: parent.width
                height: 360
                services: page.services
                actions: page.actions
            }
        }
    }

    // Wherever the list starts, as the heights of the texts above depend on the fonts.
    function test_the_first_card_is_whole_data() {
        return [0, 1, 2, 3, 0.5].map(y => ({ tag: "from " + y, y: y }));
    }

    function test_the_first_card_is_whole(data) {
        const bench = keep(benchComponent);
        bench.find(Samples.ordinary(2));
        const page = createTemporaryObject(component, root, {
            services: keep(modelComponent, { store: bench.store }),
            actions: keep(actionsComponent)
        });
        page.list.y = data.y;
        tryVerify(() => ViewInspector.all(page, "ServiceRowView").length === 2 && ViewInspector.all(page, "ServiceRowView").every(row => row.opacity === 1));
        waitForRendering(page);
        wait(250);
        const picture = grabImage(page);
        const scale = root.Screen.devicePixelRatio; // grabImage() gives the pixels of the screen
        const [first, second] = ViewInspector.all(page, "ServiceRowView").sort((a, b) => a.y - b.y);
        const brightest = row => {
            const y = Math.round(row.mapToItem(page, 0, 0).y * scale);
            const x = Math.round(100 * scale);
            return Math.max(...[-1, 0, 1].map(step => picture.red(x, y + step)));
        };
        verify(brightest(second) > picture.red(Math.round(100 * scale), Math.round((data.y + 20) * scale)));
        compare(brightest(first), brightest(second));
    }
}
