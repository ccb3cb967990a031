// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The root item of the popover and of the window.
FocusScope {
    id: root

    enum Presentation {
        Popover,
        Window
    }

    required property ServiceStore store
    required property int presentation
    required property ServiceActions actions
    required property LoginItem loginItem

    property list<string> leftButtons
    property list<string> rightButtons: root.isWindow ? ["minimize", "maximize", "close"] : []
    property real cornerRadius: 0
    property int tick: 0
    readonly property bool isWindow: root.presentation === RootView.Window

    signal detach
    signal windowMenuRequested

    implicitWidth: root.isWindow ? 480 : 384
    implicitHeight: column.height + content.implicitHeight + footer.height
    focus: true

    Timer {
        interval: 5000
        repeat: true
        running: root.visible && exposure.isExposed
        onTriggered: root.tick += 1
    }

    WindowExposure {
        id: exposure
    }

    Rectangle {
        anchors.fill: parent
        anchors.topMargin: root.cornerRadius
        anchors.bottomMargin: root.cornerRadius
        color: Theme.canvas
    }

    Column {
        id: column

        width: parent.width

        // By its address: the popover has no title bar, and would load its types on the first click.
        Loader {
            id: titleBar

            width: parent.width
            Component.onCompleted: {
                if (root.isWindow)
                    titleBar.setSource("TitleBar.qml", {
                        view: root
                    });
            }
        }

        HeaderView {
            width: parent.width
            radius: root.cornerRadius
            store: root.store
            loginItem: root.loginItem
            canDetach: !root.isWindow
            onDetach: root.detach()
        }

        SearchField {
            id: search

            width: parent.width
            text: root.store.searchText
            onTextChanged: root.store.searchText = search.text.replace(/[\r\n\u2028\u2029]+/g, " ") // as pasted
        }
    }

    ContentArea {
        id: content

        anchors.top: column.bottom
        anchors.bottom: footer.top
        width: parent.width
        store: root.store
        actions: root.actions
    }

    FooterView {
        id: footer

        anchors.bottom: parent.bottom
        width: parent.width
        radius: root.cornerRadius
        lastUpdated: root.store.lastUpdated
        // Changes as soon as the window is exposed again, so that the displayed age is correct at once.
        tick: exposure.isExposed ? root.tick : root.tick + 1
        onQuit: Qt.quit()
    }

    WindowFrame {
        anchors.fill: parent
        radius: root.cornerRadius
        isResizable: root.isWindow
    }
}
