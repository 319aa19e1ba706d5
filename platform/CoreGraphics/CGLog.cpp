#include "CoreGraphics/CGLog.h"

#include <Foundation/NSLog.h>

#include <string>

void CGLogMisuse(const char* function, const char* consequence)
{
    NSLogMessage(NSString(std::string(function) + ": " + consequence));
}
