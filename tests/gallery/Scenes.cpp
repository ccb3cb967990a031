// SPDX-License-Identifier: MIT
#include "Scenes.h"

#include "Samples.h"

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

using Presentation = GalleryScene::Presentation;
using ScanState = GalleryScene::ScanState;
using Press = GalleryScene::Press;

constexpr QPointF onFirstRow(120, 165);
constexpr int allRows = 2500;
constexpr QPointF onCopyButton(285, 175);
constexpr QPointF onMoreButton(345, 175);
constexpr QPointF onSettings(285, 26);
constexpr QPointF onRefresh(356, 26);

} // namespace

QList<GalleryScene> galleryScenes()
{
    const QList<Service> five = Samples::ordinary(5);
    return {
        {.name = u"five"_s, .services = five, .pinnedPorts = {5173}},
        {.name = u"one"_s, .services = Samples::ordinary(1)},
        {.name = u"many"_s, .services = Samples::ordinary(200)},
        {.name = u"hovered"_s, .services = five, .pointer = onFirstRow},
        {.name = u"copied"_s, .services = five, .pointer = onCopyButton, .press = Press::Left},
        {.name = u"row-menu"_s, .services = five, .pointer = onMoreButton, .press = Press::Left},
        {.name = u"context-menu"_s,
         .services = five,
         .pinnedPorts = {3000},
         .pointer = onFirstRow,
         .press = Press::Right},
        {.name = u"settings-menu"_s, .services = five, .pointer = onSettings, .press = Press::Left},
        {.name = u"refresh-hovered"_s, .services = five, .pointer = onRefresh},
        {.name = u"scanning-again"_s, .services = five, .scanState = ScanState::Rescan},
        {.name = u"search-focused"_s, .services = five, .keys = u"k"_s},
        {.name = u"searching"_s, .services = five, .searchText = u"da"_s, .keys = u"k"_s},
        {.name = u"tool-tip"_s, .services = five, .pointer = onCopyButton, .hoverMs = 1000},
        {.name = u"menu-by-keyboard"_s, .services = five, .keys = u"kttdmd"_s},
        {.name = u"no-match"_s, .services = five, .searchText = u"unmatched"_s},
        {.name = u"nothing-running"_s},
        {.name = u"first-scan"_s, .scanState = ScanState::FirstScan},
        {.name = u"row-focused"_s, .services = five, .keys = u"kttd"_s},
        {.name = u"health-states"_s, .services = Samples::allHealthStates()},
        {.name = u"unusual"_s, .services = Samples::unusual(), .presentation = Presentation::Popover},
        {.name = u"unusual-hovered"_s, .services = Samples::unusual(), .pointer = onFirstRow},
        {.name = u"frameworks-window"_s,
         .services = Samples::allFrameworks(),
         .presentation = Presentation::Window,
         .height = allRows},
        {.name = u"five-window"_s,
         .services = five,
         .presentation = Presentation::Window,
         .pinnedPorts = {5173}},
        {.name = u"unusual-window"_s,
         .services = Samples::unusual(),
         .presentation = Presentation::Window,
         .height = 860},
        {.name = u"many-window"_s,
         .services = Samples::ordinary(200),
         .presentation = Presentation::Window,
         .pointer = onFirstRow},
        {.name = u"no-match-window"_s,
         .services = five,
         .presentation = Presentation::Window,
         .searchText = u"unmatched"_s},
        {.name = u"nothing-running-window"_s, .presentation = Presentation::Window},
        {.name = u"first-scan-window"_s,
         .presentation = Presentation::Window,
         .scanState = ScanState::FirstScan},
    };
}

} // namespace portolan
