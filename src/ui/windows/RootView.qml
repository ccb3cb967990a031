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

    property int tick: 0
    readonly property bool isWindow: root.presentation === RootView.Window

    signal detach

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

        item: root
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.canvas
    }

    Column {
        id: column

        width: parent.width

        Rectangle {
            visible: root.isWindow
            width: parent.width
            height: 28
            color: Theme.elevated
        }

        HeaderView {
            width: parent.width
            store: root.store
            loginItem: root.loginItem
            canDetach: !root.isWindow
            onDetach: root.detach()
        }

        SearchField {
            id: search

            width: parent.width
            text: root.store.searchText
            onTextChanged: root.store.searchText = search.text
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
        lastUpdated: root.store.lastUpdated
        tick: root.tick
        onQuit: Qt.quit()
    }
}
