#pragma once

#include <Foundation/NSError.h>

/// Codes of errors in NSCocoaErrorDomain.
enum : NSInteger {
    NSPropertyListReadCorruptError = 3840,  ///< the bytes are not a property list, or not JSON
    NSPropertyListWriteInvalidError = 3852, ///< the object has no such form
    NSCoderReadCorruptError = 4864,   ///< the bytes are not an archive, or its parts do not fit together
    NSCoderValueNotFoundError = 4865, ///< the archive holds nothing
    NSCoderInvalidValueError = 4866,  ///< an object cannot be archived
};
