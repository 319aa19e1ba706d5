#include "QtMessages.h"

#include "Conversions.h"

#include <Foundation/NSLog.h>
#include <QtGlobal>

#include <algorithm>
#include <iterator>

namespace {

/// How the remarks begin that no user can do anything about, and that cost no program a feature: a runtime
/// folder that is missing or that others may read, and what a window system has no notion of.
constexpr const char* kRemarks[] = {"QStandardPaths: ", "This plugin does not support "};

bool isRemark(const QString& text)
{
    return std::any_of(std::begin(kRemarks), std::end(kRemarks),
        [&](const char* beginning) { return text.startsWith(QLatin1String(beginning)); });
}

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (!isRemark(text))
        NSLogMessage(fromQt(qFormatLogMessage(type, context, text)));
}

} // namespace

void sendQtMessagesToLog()
{
    // Each call answers the handler before it; once there is none, that is Qt's own.
    const QtMessageHandler before = qInstallMessageHandler(nullptr);
    const QtMessageHandler ofQt = qInstallMessageHandler(handleMessage);
    if (before != ofQt)
        qInstallMessageHandler(before);
}
