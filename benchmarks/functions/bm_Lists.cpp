// SPDX-License-Identifier: MIT
// Updates of the list: the visible list and the model that follows it.
#include "SampleServices.h"
#include "ServiceStore.h"
#include "UserDefaults.h"
#include "VisibleList.h"
#include "VisibleServicesModel.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <atomic>

namespace portolan {

namespace {

void visible(benchmark::State &state)
{
    const QList<Service> services = sampleServices(state.range());
    const VisibleList::Criteria criteria{
        .searchText = {}, .pinnedPorts = {1024, 1048, 1072}, .sortOrder = *SortOrder::fromRawValue(u"name")};
    for (auto _ : state)
        benchmark::DoNotOptimize(VisibleList::of(services, criteria));
    state.SetItemsProcessed(state.iterations() * state.range());
}

void visibleWithSearch(benchmark::State &state)
{
    const QList<Service> services = sampleServices(state.range());
    const VisibleList::Criteria criteria{.searchText = QStringLiteral("project 1"),
                                         .pinnedPorts = {},
                                         .sortOrder = *SortOrder::fromRawValue(u"port")};
    for (auto _ : state)
        benchmark::DoNotOptimize(VisibleList::of(services, criteria));
    state.SetItemsProcessed(state.iterations() * state.range());
}

/// A store with fake scans, and the model that shows it.
class ShownStore
{
public:
    explicit ShownStore(qsizetype count)
        : m_count(count)
    {
        m_model.setStore(&m_store);
        refresh();
    }

    void refresh()
    {
        m_store.refresh();
        while (m_store.isScanning())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        settle();
    }

    void search(const QString &text)
    {
        m_store.setSearchText(text);
        settle();
    }

private:
    static void settle() { QCoreApplication::processEvents(); }

    const qsizetype m_count;
    std::atomic<int> m_round = 0;
    QTemporaryDir m_folder;
    UserDefaults m_defaults{m_folder.filePath(QStringLiteral("settings.json"))};
    ServiceStore m_store{m_defaults,
                         [this](const std::stop_token &) {
                             return ScanResult{sampleServices(m_count, ++m_round), {}};
                         },
                         [](qint64) { return QtFuture::makeReadyFuture(Health::healthy(200, 1)); }};
    VisibleServicesModel m_model;
};

/// A refresh of everything between the scan and the view: merge, probe results, visible list, model.
void refreshModel(benchmark::State &state)
{
    ShownStore shown(state.range());
    for (auto _ : state)
        shown.refresh();
    state.SetItemsProcessed(state.iterations() * state.range());
}

/// A search that matches a tenth of the rows, and clearing it.
void searchModel(benchmark::State &state)
{
    ShownStore shown(state.range());
    for (auto _ : state) {
        shown.search(QStringLiteral("project 1"));
        shown.search({});
    }
    state.SetItemsProcessed(state.iterations() * state.range());
}

} // namespace

BENCHMARK(visible)->Arg(50)->Arg(1'000)->Arg(10'000);
BENCHMARK(visibleWithSearch)->Arg(50)->Arg(1'000)->Arg(10'000);
BENCHMARK(refreshModel)
    ->Arg(50)
    ->Arg(1'000)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime();
BENCHMARK(searchModel)
    ->Arg(50)
    ->Arg(1'000)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime();

} // namespace portolan
