#pragma once

#include <Foundation/FoundationErrors.h>
#include <Foundation/NSBoxedString.h>

/// Sets an error out-parameter, unless it is null, to `code` with a sentence that gives the reason.
inline void setCocoaError(RetainPtr<NSError>* error, NSInteger code, const NSString& description)
{
    if (!error)
        return;
    NSDictionary::Map info;
    info.emplace(NSLocalizedDescriptionKey, box(description));
    *error = NSError::errorWithDomain(NSCocoaErrorDomain, code, make<NSDictionary>(std::move(info)));
}
