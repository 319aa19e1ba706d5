#include "QtMessages.h"

#include "Conversions.h"

#include <Foundation/NSLog.h>
#include <QtGlobal>

#include <algorithm>
#include <iterator>

namespace {

/// The prefixes of messages that no user can act on and that cost no feature: about a runtime folder that is
/// missing or that others may read, and about what a window system does not support.
constexpr const char* kIgnoredPrefixes[] = {"QStandardPaths: ", "This plugin does not support "};

bool isIgnored(const QString& text)
{
    return std::any_of(std::begin(kIgnoredPrefixes), std::end(kIgnoredPrefixes),
        [&](const char* prefix) { return text.startsWith(QLatin1String(prefix)); });
}

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (!isIgnored(text))
        NSLogMessage(fromQt(qFormatLogMessage(type, context, text)));
}

} // namespace

void sendQtMessagesToLog()
{
    // Each call returns the previous handler; after null that is Qt's default one.
    const QtMessageHandler previous = qInstallMessageHandler(nullptr);
    const QtMessageHandler defaultHandler = qInstallMessageHandler(handleMessage);
    if (previous != defaultHandler)
        qInstallMessageHandler(previous);
}
