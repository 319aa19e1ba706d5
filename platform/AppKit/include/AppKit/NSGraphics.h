#pragma once

#include <AppKit/NSGeometry.h>
#include <Foundation/NSObjCRuntime.h>

/// How a source is composited with what is there: Core Graphics' blend modes, which CGBlendMode.h defines,
/// under AppKit's names and numbers. Missing numbers are not supported.
enum NSCompositingOperation : NSUInteger {
    NSCompositingOperationClear = 0,
    NSCompositingOperationCopy = 1,
    NSCompositingOperationSourceOver = 2,
    NSCompositingOperationSourceIn = 3,
    NSCompositingOperationSourceOut = 4,
    NSCompositingOperationSourceAtop = 5, ///< leaves the alpha of the destination
    NSCompositingOperationDestinationOver = 6,
    NSCompositingOperationDestinationOut = 8,
    NSCompositingOperationXOR = 10,
    NSCompositingOperationPlusLighter = 13,
    NSCompositingOperationMultiply = 14,
    NSCompositingOperationScreen = 15,
    NSCompositingOperationOverlay = 16,
    NSCompositingOperationDarken = 17,
    NSCompositingOperationLighten = 18,
    NSCompositingOperationColorDodge = 19,
    NSCompositingOperationColorBurn = 20,
    NSCompositingOperationSoftLight = 21,
    NSCompositingOperationHardLight = 22,
    NSCompositingOperationDifference = 23,
    NSCompositingOperationExclusion = 24,
    NSCompositingOperationHue = 25,
    NSCompositingOperationSaturation = 26,
    NSCompositingOperationColor = 27,
    NSCompositingOperationLuminosity = 28,
};

// Filling. The destination is the current graphics context, the colour that of `NSColor::set`. Without a
// context these do nothing. Safe on any thread, in a context of its own.

/// Replaces a rectangle by the colour, transparent or not: NSCompositingOperationCopy.
KORVID_EXPORT void NSRectFill(NSRect rect);
/// Fills a rectangle; pixels outside do not change in any operation. Another number than those above is
/// logged and fills nothing.
KORVID_EXPORT void NSRectFillUsingOperation(NSRect rect, NSCompositingOperation operation);
