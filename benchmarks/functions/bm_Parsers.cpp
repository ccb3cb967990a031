// SPDX-License-Identifier: MIT
// Parsing the tools' output.
#include "LsofOutput.h"
#include "ProcessInspector.h"
#include "ProjectDetector_p.h"

#include <benchmark/benchmark.h>

namespace portolan {

using namespace Qt::StringLiterals;

namespace {

QString listing(int count)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text +=
            u"p%1\ncnode\nf21\nPTCP\nn127.0.0.1:%2\nTST=LISTEN\nTQR=0\nTQS=0\n"_s.arg(1000 + i).arg(3000 + i);
    return text;
}

void parseListeners(benchmark::State &state)
{
    const QString text = listing(int(state.range()));
    for (auto _ : state)
        benchmark::DoNotOptimize(PortScanner::parseListeners(text));
    state.SetItemsProcessed(state.iterations() * state.range());
}

void parseStats(benchmark::State &state)
{
    const QString text = u" 3-04:05:06   12.5  204800\n"_s;
    for (auto _ : state)
        benchmark::DoNotOptimize(ProcessInspector::parse(text));
}

void detectFromPackage(benchmark::State &state)
{
    const QByteArray json = R"({"name": "@acme/web-shop", "scripts": {"dev": "vite"},
        "dependencies": {"react": "18", "zustand": "4"}, "devDependencies": {"vite": "5", "eslint": "9"}})";
    for (auto _ : state)
        benchmark::DoNotOptimize(ProjectDetector::detectFromPackage(json, u"web-shop"_s, u"node"_s));
}

} // namespace

BENCHMARK(parseListeners)->Arg(50)->Arg(1'000)->Arg(10'000);
BENCHMARK(parseStats);
BENCHMARK(detectFromPackage);

} // namespace portolan
