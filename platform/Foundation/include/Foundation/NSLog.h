#pragma once

#include <Foundation/NSFormat.h>

/// Writes one message as it is: what NSLog does with its finished text. Null writes nothing.
KORVID_EXPORT void NSLogMessage(const NSString& message);

/// Writes a message to the log: to standard error, behind date, time, program and thread, and to the system's
/// journal where there is one (not twice, where the journal already takes standard error; and no message of
/// more than some 200,000 bytes, which the system does not send in one piece).
///
/// The format is that of NSFormatString. A message is written whole, whatever other threads write meanwhile.
/// Any thread.
template <class... Args> void NSLog(const NSString& format, const Args&... args)
{
    NSLogMessage(NSString::stringWithFormat(format, args...));
}
