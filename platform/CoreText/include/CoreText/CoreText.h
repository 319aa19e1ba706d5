#pragma once

/// @file
/// All of Core Text: fonts and lines of text.

#include <CoreText/CTFont.h>
#include <CoreText/CTLine.h>
#include <CoreText/CTStringAttributes.h>
