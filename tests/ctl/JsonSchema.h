// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>

#include <gtest/gtest.h>

namespace portolan {

/// The schema of portolanctl's JSON in docs/, applied by Python's jsonschema.
class JsonSchema
{
public:
    JsonSchema()
    {
        m_python.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), QStringLiteral(R"(
import json, jsonschema, sys
schema = json.load(open(sys.argv[1]))
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
for line in sys.stdin:
    print(int(validator.is_valid(json.loads(line))), flush=True)
)"),
                                                            QStringLiteral(PORTOLANCTL_SCHEMA)});
    }
    ~JsonSchema()
    {
        m_python.closeWriteChannel();
        m_python.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(JsonSchema)

    [[nodiscard]] bool allows(QByteArray json) const
    {
        m_python.write(json.replace('\n', ' ') + '\n');
        while (!m_python.canReadLine() && m_python.waitForReadyRead(30'000)) {
        }
        const QByteArray answer = m_python.readLine();
        EXPECT_TRUE(answer == "0\n" || answer == "1\n") << m_python.readAllStandardError().toStdString();
        return answer == "1\n";
    }

private:
    mutable QProcess m_python;
};

} // namespace portolan
