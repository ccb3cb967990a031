#include "Eventually.h"
#include "FakeChecker.h"
#include "FakeScanner.h"
#include "Printers.h"
#include "ServiceStore.h"
#include "UserDefaults.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Smoke, Cycle)
{
    QTemporaryDir dir;
    UserDefaults defaults(dir.filePath(u"s.json"_s));
    FakeScanner scanner;
    FakeChecker checker;
    ServiceStore store(defaults, scanner.function(), checker.function(), std::chrono::milliseconds(50));
    store.start();
    EXPECT_TRUE(store.isScanning());
    scanner.finish({Service{.pid = 1, .port = 80}, Service{.pid = 2, .port = 90}});
    ASSERT_TRUE(eventually([&] { return !store.isScanning(); }));
    ASSERT_EQ(checker.ports().size(), 2);
    checker.answer(1, Health::healthy(200, 1));
    ASSERT_TRUE(eventually([&] { return store.runningCount() == 1; }));
}
