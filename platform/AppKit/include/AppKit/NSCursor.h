#pragma once

#include <Foundation/NSObject.h>

enum class HostCursor : int;

/// A shape of the pointer. The functions below return shared objects, which are borrowed and never destroyed.
///
/// A view sets cursors for its parts by `addCursorRect`, called in an override of `resetCursorRects`:
///
///     void resetCursorRects() override { addCursorRect(bounds(), NSCursor::pointingHandCursor()); }
///
/// Main thread only.
class KORVID_EXPORT NSCursor final : public NSObject {
public:
    /// The ordinary pointer.
    static NSCursor* arrowCursor();
    /// For text that can be selected.
    static NSCursor* IBeamCursor();
    /// For choosing a point precisely.
    static NSCursor* crosshairCursor();
    /// For what is being dragged.
    static NSCursor* closedHandCursor();
    /// For what can be dragged.
    static NSCursor* openHandCursor();
    /// For links and buttons.
    static NSCursor* pointingHandCursor();
    /// For an edge that can be moved sideways.
    static NSCursor* resizeLeftRightCursor();
    /// For an edge that can be moved up and down.
    static NSCursor* resizeUpDownCursor();
    /// For a place where what is being dragged cannot be dropped.
    static NSCursor* operationNotAllowedCursor();

    /// Shows this cursor over all windows of the application, until the pointer moves to a place with another
    /// cursor or a button is released.
    void set();
    /// The cursor that was set last; at first the arrow. Borrowed, never null.
    static NSCursor* currentCursor();

protected:
    ~NSCursor() override;

private:
    explicit NSCursor(HostCursor shape)
        : _shape(shape)
    {
    }

    /// The shared cursor of a shape.
    template <HostCursor kShape> static NSCursor* shared();

    const HostCursor _shape;
};
