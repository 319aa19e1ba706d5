#include "Compositing.h"

#include <AppKit/NSGraphicsContext.h>
#include <Foundation/NSLog.h>

std::optional<CGBlendMode> blendModeOf(NSCompositingOperation operation)
{
    switch (operation) {
    case NSCompositingOperationClear:
        return kCGBlendModeClear;
    case NSCompositingOperationCopy:
        return kCGBlendModeCopy;
    case NSCompositingOperationSourceOver:
        return kCGBlendModeNormal;
    case NSCompositingOperationSourceIn:
        return kCGBlendModeSourceIn;
    case NSCompositingOperationSourceOut:
        return kCGBlendModeSourceOut;
    case NSCompositingOperationSourceAtop:
        return kCGBlendModeSourceAtop;
    case NSCompositingOperationDestinationOver:
        return kCGBlendModeDestinationOver;
    case NSCompositingOperationDestinationOut:
        return kCGBlendModeDestinationOut;
    case NSCompositingOperationXOR:
        return kCGBlendModeXOR;
    case NSCompositingOperationPlusLighter:
        return kCGBlendModePlusLighter;
    default:
        break;
    }
    // The blend modes of PDF have the same order under both names.
    if (operation >= NSCompositingOperationMultiply && operation <= NSCompositingOperationLuminosity)
        return static_cast<CGBlendMode>(
            int(operation - NSCompositingOperationMultiply) + kCGBlendModeMultiply);
    NSLog("Compositing operation %lu is not supported.", static_cast<NSUInteger>(operation));
    return std::nullopt;
}

void NSRectFill(NSRect rect)
{
    NSRectFillUsingOperation(rect, NSCompositingOperationCopy);
}

void NSRectFillUsingOperation(NSRect rect, NSCompositingOperation operation)
{
    const NSGraphicsContext* const current = NSGraphicsContext::currentContext();
    const auto mode = current ? blendModeOf(operation) : std::nullopt;
    if (!mode)
        return;
    const CGContextRef context = current->CGContext();
    CGContextSaveGState(context);
    CGContextSetBlendMode(context, *mode);
    CGContextFillRect(context, rect);
    CGContextRestoreGState(context);
}
