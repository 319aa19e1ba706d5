// The modules of a static library, which contains them: in place of Foundation/Module.cpp, which loads shared
// ones.

#include "Foundation/Module.h"

#include <CoreGraphics/CGDataProvider.h>
#include <Foundation/NSException.h>

#include <string_view>

class Host;
class PDFPages;

extern "C" Host* makeQtHost();
extern "C" PDFPages* openPDFPages(CGDataProviderRef bytes, const char* name);

void* moduleFunction(const char* module, const char* function)
{
    const std::string_view name = function;
    if (name == "makeQtHost")
        return reinterpret_cast<void*>(&makeQtHost);
    if (name == "openPDFPages")
        return reinterpret_cast<void*>(&openPDFPages);
    NSException::raise(NSInternalInconsistencyException,
        NSString("KorvidPlatform has no function " + std::string(function) + " in " + module));
}
