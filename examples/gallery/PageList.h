#pragma once

#include "ScrollArea.h"

#include <CoreGraphics/CGContext.h>
#include <Foundation/NSString.h>

#include <functional>
#include <optional>
#include <vector>

/// The list of pages: a row with a title for each, of which one is selected. A click selects a row, and so do
/// the up and down arrow, Home and End while the list is first responder.
class PageList : public ScrolledView {
public:
    static constexpr CGFloat kWidth = 200;

    /// `select` is called with the number of another row that the user selects.
    PageList(std::vector<NSString> titles, std::function<void(std::size_t row)> select);

    std::size_t count() const { return _titles.size(); }
    std::size_t selectedRow() const { return _selectedRow; }
    /// Moves the selection without a call of `select`. Rows that do not exist are ignored.
    void setSelectedRow(std::size_t row);

    /// The row's place within the bounds.
    NSRect rectOfRow(std::size_t row) const;
    /// The row at a point of the bounds.
    std::optional<std::size_t> rowAt(NSPoint point) const;

    NSSize sizeFor(NSSize visible) const override;
    void drawRect(NSRect dirtyRect) override;
    /// The row under the pointer.
    std::optional<std::size_t> hoveredRow() const { return _hoveredRow; }

    bool acceptsFirstResponder() const override { return true; }
    bool becomeFirstResponder() override;
    bool resignFirstResponder() override;
    void mouseDown(NSEvent* event) override;
    void mouseMoved(NSEvent* event) override;
    void mouseExited(NSEvent* event) override;
    void keyDown(NSEvent* event) override;

protected:
    ~PageList() override;

private:
    void userSelects(std::size_t row);
    void setHoveredRow(std::optional<std::size_t> row);
    void drawRow(CGContextRef context, std::size_t row) const;

    const std::vector<NSString> _titles;
    const std::function<void(std::size_t)> _select;
    std::size_t _selectedRow = 0;
    std::optional<std::size_t> _hoveredRow;
    bool _isFocused = false;
};
