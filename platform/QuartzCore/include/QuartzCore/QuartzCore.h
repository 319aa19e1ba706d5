#pragma once

/// @file
/// All of QuartzCore, and the framework that it builds on.

#include <CoreGraphics/CoreGraphics.h>

#include <QuartzCore/CALayer.h>
