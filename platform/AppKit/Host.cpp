#include "AppKit/Host.h"

#include "Foundation/Module.h"

Host& Host::shared()
{
    static Host* const host =
        reinterpret_cast<Host* (*)()>(moduleFunction("KorvidPlatformQt", "makeQtHost"))();
    return *host;
}
