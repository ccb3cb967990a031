// SPDX-License-Identifier: MIT
#pragma once

#include "Eventually.h"
#include "FakeChecker.h"
#include "FakeScanner.h"
#include "ServiceStore.h"
#include "UserDefaults.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>

namespace portolan {

/// A store with settings of its own, whose scans and probes wait for the test.
class StoreFixture : public testing::Test
{
protected:
    QString settingsPath() const { return m_folder.filePath(QStringLiteral("settings.json")); }

    void writeSettings(const QByteArray &json) const
    {
        QFile file(settingsPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(json);
    }

    QJsonObject settings() const
    {
        QFile file(settingsPath());
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                              : QJsonObject();
    }

    void makeStore(std::chrono::milliseconds autoRefreshInterval = std::chrono::hours(1))
    {
        m_defaults = std::make_unique<UserDefaults>(settingsPath());
        m_store = std::make_unique<ServiceStore>(*m_defaults, m_scanner.function(), m_checker.function(),
                                                 autoRefreshInterval);
    }

    /// Refreshes, lets the scan find `services`, and waits until the store has them.
    void scan(const QList<Service> &services)
    {
        m_store->refresh();
        finishScan(services);
    }

    /// Lets the scan under way find `services`, and waits until the store has them.
    void finishScan(const QList<Service> &services)
    {
        m_scanner.finish(services);
        ASSERT_TRUE(eventually([this] { return !m_store->isScanning(); }));
    }

    static Service service(qint32 pid, qint64 port, Health health = {})
    {
        return {.pid = pid, .port = port, .displayName = QStringLiteral("name"), .health = health};
    }

    Health healthAt(qsizetype row) const { return m_store->services().at(row).health; }

    QTemporaryDir m_folder;
    FakeScanner m_scanner;
    FakeChecker m_checker;
    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<ServiceStore> m_store;
};

} // namespace portolan
