#pragma once

#include "CoreText/pango/FontLibrary.h"

/// Lays out a line with Pango, as FontSystem::shape says. Without its serial.
std::shared_ptr<ShapedText> shapeWithPango(
    FontLibrary& fonts, const NSString& text, std::span<const TextSpan> spans);
