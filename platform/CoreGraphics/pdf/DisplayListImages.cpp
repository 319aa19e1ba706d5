#include "CoreGraphics/pdf/DisplayListPlayer.h"

void DisplayListPlayer::draw(const ShadeItem&) { }

void DisplayListPlayer::draw(const ImageItem&) { }

void DisplayListPlayer::draw(const TileItem&) { }
