#include <KorvidAppKit/ZRFlippedClipView.h>

ZRFlippedClipView::~ZRFlippedClipView() = default;
