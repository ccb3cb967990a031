// SPDX-License-Identifier: MIT
import QtQuick
import Portolan

// The actions of a service.
PopupMenu {
    id: root

    required property service service
    required property bool isPinned
    required property ServiceActions actions

    signal togglePin

    Accessible.name: DisplayText.line(root.service.displayName)

    MenuEntry {
        text: "Open in Browser"
        onTriggered: root.actions.openInBrowser(root.service)
    }
    MenuEntry {
        text: "Copy URL"
        onTriggered: root.actions.copyURL(root.service)
    }
    MenuEntry {
        text: "Copy Port"
        onTriggered: root.actions.copyPort(root.service)
    }
    MenuSeparator {}
    MenuEntry {
        text: root.isPinned ? "Unpin" : "Pin to Top"
        onTriggered: root.togglePin()
    }
    MenuSeparator {
        visible: root.service.hasFolder
    }
    MenuEntry {
        visible: root.service.hasFolder
        text: "Reveal in Finder"
        onTriggered: root.actions.revealInFinder(root.service)
    }
    MenuEntry {
        visible: root.service.hasFolder
        text: "Open in Editor"
        onTriggered: root.actions.openInEditor(root.service)
    }
    MenuEntry {
        visible: root.service.hasFolder
        text: "Open in Terminal"
        onTriggered: root.actions.openInTerminal(root.service)
    }
    MenuSeparator {}
    MenuEntry {
        text: "Stop Server"
        isDestructive: true
        onTriggered: root.actions.stop(root.service)
    }
}
