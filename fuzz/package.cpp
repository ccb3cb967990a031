// SPDX-License-Identifier: MIT
// package.json, and the names in it.
#include "ProjectDetector_p.h"
#include "Require.h"

#include <algorithm>

namespace portolan {

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const QString folder = QStringLiteral("folder");
    const auto result = ProjectDetector::detectFromPackage(bytes, folder, QStringLiteral("node"));
    if (result) {
        // Only frameworks of the Node ecosystem can be detected from package.json.
        require(result->framework <= Framework::node);
        const bool isCleaned = std::ranges::none_of(result->displayName, [](QChar character) {
            return character == u'-' || character == u'_' || character == u'.' || character == u'/';
        });
        require(isCleaned);
    }

    const QString text = QString::fromUtf8(bytes);
    const std::optional<QString> name = ProjectDetector::cleanName(text);
    require(name.has_value() == (!text.isEmpty() && !text.endsWith(u'/')));
    require(ProjectDetector::capitalized(text).isEmpty() == text.isEmpty());
    return 0;
}

} // namespace portolan
