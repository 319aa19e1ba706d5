#pragma once

/// @file
/// All of AppKit, and the frameworks that its headers build on.

#include <CoreGraphics/CoreGraphics.h>
#include <CoreText/CoreText.h>
#include <Foundation/Foundation.h>
#include <QuartzCore/QuartzCore.h>

#include <AppKit/NSAccessibility.h>
#include <AppKit/NSAlert.h>
#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSButton.h>
#include <AppKit/NSButtonCell.h>
#include <AppKit/NSCell.h>
#include <AppKit/NSClipView.h>
#include <AppKit/NSColor.h>
#include <AppKit/NSColorSpace.h>
#include <AppKit/NSControl.h>
#include <AppKit/NSCursor.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSGeometry.h>
#include <AppKit/NSGraphics.h>
#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSImage.h>
#include <AppKit/NSLayoutConstraint.h>
#include <AppKit/NSParagraphStyle.h>
#include <AppKit/NSPasteboard.h>
#include <AppKit/NSResponder.h>
#include <AppKit/NSScreen.h>
#include <AppKit/NSStatusBar.h>
#include <AppKit/NSStatusBarButton.h>
#include <AppKit/NSStatusItem.h>
#include <AppKit/NSStringAttributes.h>
#include <AppKit/NSStringDrawing.h>
#include <AppKit/NSTextField.h>
#include <AppKit/NSTextFieldCell.h>
#include <AppKit/NSTrackingArea.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>
