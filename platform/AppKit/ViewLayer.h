#pragma once

#include <CoreGraphics/CGContext.h>

#include <cstddef>
#include <cstdint>
#include <vector>

/// A copy of some pixels of an RGBA bitmap context, which lasts as long as this object.
class SavedPixels {
public:
    /// Memory for one copy at a time; grows to the largest and is reused by the next.
    using Memory = std::vector<std::uint32_t>;

    /// Copies what of `area`, pixels with whole edges in base space, lies in the context. The context's
    /// alpha is the last of four premultiplied bytes.
    SavedPixels(CGContextRef context, CGRect area, Memory& memory);
    SavedPixels(const SavedPixels&) = delete;
    SavedPixels& operator=(const SavedPixels&) = delete;

    /// Makes the pixels in the context transparent.
    void clear() const;
    /// Puts the saved pixels back.
    void restore() const;
    /// Puts the saved pixels below those that are in the context now.
    void putBelow() const;

private:
    unsigned char* row(std::size_t y) const { return _bytes + y * _bytesPerRow; }
    std::uint32_t* savedRow(std::size_t y) const { return _memory.data() + y * _width; }

    Memory& _memory; ///< the copy, and one more row
    unsigned char* _bytes = nullptr;
    std::size_t _bytesPerRow = 0;
    std::size_t _width = 0;
    std::size_t _height = 0;
};

/// While in scope, the pixels of an area begin transparent: what is drawn in the context there is drawn in a
/// layer of its own. At the end the layer is composited over what was there before.
class ViewLayer {
public:
    ViewLayer(CGContextRef context, CGRect area, SavedPixels::Memory& memory)
        : _backdrop(context, area, memory)
    {
        _backdrop.clear();
    }
    ViewLayer(const ViewLayer&) = delete;
    ViewLayer& operator=(const ViewLayer&) = delete;
    ~ViewLayer() { _backdrop.putBelow(); }

private:
    SavedPixels _backdrop;
};
