#include "CoreGraphics/pdf/PDFMesh.h"

#include "CoreGraphics/pdf/PDFBits.h"
#include "CoreGraphics/pdf/PDFRecording.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

namespace {

/// Reads numbers of 1 to 32 bits in turn.
class BitReader {
public:
    explicit BitReader(std::string bytes)
        : _bytes(std::move(bytes))
    {
    }

    bool has(std::size_t bits) const { return _position + bits <= _bytes.size() * 8; }
    /// The caller checks that there are as many bits.
    std::uint32_t read(std::size_t bits)
    {
        const std::uint32_t number = bitsAt(_bytes, _position, bits);
        _position += bits;
        return number;
    }
    void skipToByte() { _position = (_position + 7) / 8 * 8; }

private:
    std::string _bytes;
    std::size_t _position = 0; ///< in bits
};

bool isOneOf(int number, std::initializer_list<int> numbers)
{
    return std::ranges::find(numbers, number) != numbers.end();
}

class MeshReader {
public:
    MeshReader(const PDFObject& stream, const PDFShadingColors& colors, PDFRecording& recording)
        : _stream(stream)
        , _colors(colors)
        , _recording(recording)
        , _type(stream["ShadingType"].integer())
        , _bits(recording.decode(stream))
    {
    }

    /// False when the dictionary is invalid.
    bool readDictionary()
    {
        const int coordinateBits = _stream["BitsPerCoordinate"].integer();
        const int componentBits = _stream["BitsPerComponent"].integer();
        const int flagBits = _type == 5 ? 0 : _stream["BitsPerFlag"].integer();
        _components = _colors.hasFunctions() ? 1 : _colors.space().components();
        const std::vector<double> decode = _stream["Decode"].numbers(2 * (2 + _components));
        if (!isOneOf(coordinateBits, {1, 2, 4, 8, 12, 16, 24, 32})
            || !isOneOf(componentBits, {1, 2, 4, 8, 12, 16}) || !isOneOf(flagBits, {0, 2, 4, 8})
            || (flagBits == 0) != (_type == 5) || decode.size() < 2 * (2 + _components))
            return false;
        _coordinateBits = std::size_t(coordinateBits);
        _componentBits = std::size_t(componentBits);
        _flagBits = std::size_t(flagBits);
        for (std::size_t i = 0; i < decode.size(); i += 2)
            _decode.push_back({decode[i], decode[i + 1]});
        // Interpolated as RGB where that is the same, and where it would take too much memory otherwise.
        _mesh.hasRGB = !_colors.hasFunctions()
            && (_colors.space().isLinear() || _components > std::tuple_size_v<PDFMeshColor>);
        return true;
    }

    /// False when the rows of a lattice are too short.
    bool readContent()
    {
        if (_type == 4)
            readTriangles();
        else if (_type == 5)
            return readLattice();
        else
            readPatches();
        return true;
    }

    PDFMesh takeMesh() { return std::move(_mesh); }

private:
    std::size_t vertexBits() const { return 2 * _coordinateBits + _components * _componentBits; }

    double readNumber(std::size_t bits, const PDFInterval& decode)
    {
        const PDFInterval encoded{0, double((std::uint64_t(1) << bits) - 1)};
        return encoded.map(_bits.read(bits), decode);
    }

    CGPoint readPoint()
    {
        const double x = readNumber(_coordinateBits, _decode[0]);
        return {x, readNumber(_coordinateBits, _decode[1])};
    }

    PDFMeshColor readColor()
    {
        std::array<double, PDFColorSpace::kMaxComponents> components;
        for (std::size_t i = 0; i < _components; ++i)
            components[i] = readNumber(_componentBits, _decode[2 + i]);
        if (_mesh.hasRGB) {
            const PDFRGB color = _colors.space().color(components);
            return {color.r, color.g, color.b, 0};
        }
        PDFMeshColor color{};
        std::copy_n(components.begin(), _components, color.begin());
        return color;
    }

    /// Appends a vertex and returns its index.
    std::uint32_t readVertex()
    {
        _recording.budget().spendPoints(1);
        const CGPoint point = readPoint();
        _mesh.vertices.push_back({point, readColor()});
        _bits.skipToByte();
        return std::uint32_t(_mesh.vertices.size() - 1);
    }

    void readTriangles()
    {
        const std::size_t bits = _flagBits + vertexBits();
        std::array<std::uint32_t, 3> triangle{};
        std::size_t missing = 3; // vertices of the first triangle
        while (_bits.has(bits)) {
            const std::uint32_t flag = _bits.read(_flagBits) & 3;
            const std::uint32_t vertex = readVertex();
            if (missing == 0 && flag == 0)
                missing = 3;
            if (missing > 0) {
                triangle[3 - missing] = vertex;
                --missing;
            } else {
                triangle = {flag == 2 ? triangle[0] : triangle[1], triangle[2], vertex};
            }
            if (missing == 0)
                _mesh.triangles.push_back(triangle);
        }
    }

    bool readLattice()
    {
        const int perRow = _stream["VerticesPerRow"].integer();
        if (perRow < 2)
            return false;
        const auto columns = std::uint32_t(perRow);
        while (_bits.has(vertexBits())) {
            const std::uint32_t vertex = readVertex();
            if (vertex < columns || vertex % columns == 0)
                continue;
            const std::uint32_t above = vertex - columns;
            _mesh.triangles.push_back({above - 1, above, vertex - 1});
            _mesh.triangles.push_back({above, vertex - 1, vertex});
        }
        return true;
    }

    /// The outline of a patch as files list it: 12 points and 4 colours, starting at (u, v) = (0, 0), with v
    /// growing first.
    struct Outline {
        std::array<CGPoint, 12> points;
        std::array<PDFMeshColor, 4> colors;
    };

    void readPatches()
    {
        const std::size_t innerPoints = _type == 7 ? 4 : 0;
        Outline outline{};
        bool hasPrevious = false;
        while (_bits.has(_flagBits)) {
            const std::uint32_t flag = hasPrevious ? _bits.read(_flagBits) & 3 : (_bits.read(_flagBits), 0);
            const std::size_t sharedPoints = flag == 0 ? 0 : 4;
            const std::size_t sharedColors = flag == 0 ? 0 : 2;
            if (!_bits.has(2 * _coordinateBits * (12 - sharedPoints + innerPoints)
                    + _components * _componentBits * (4 - sharedColors)))
                return;
            _recording.budget().spendPoints(16);
            const Outline previous = outline;
            for (std::size_t i = 0; i < sharedPoints; ++i)
                outline.points[i] = previous.points[(3 * flag + i) % 12];
            for (std::size_t i = 0; i < sharedColors; ++i)
                outline.colors[i] = previous.colors[(flag + i) % 4];
            for (std::size_t i = sharedPoints; i < 12; ++i)
                outline.points[i] = readPoint();
            std::array<CGPoint, 4> inner{};
            for (std::size_t i = 0; i < innerPoints; ++i)
                inner[i] = readPoint();
            for (std::size_t i = sharedColors; i < 4; ++i)
                outline.colors[i] = readColor();
            _bits.skipToByte();
            appendPatch(outline, inner);
            hasPrevious = true;
        }
    }

    void appendPatch(const Outline& outline, const std::array<CGPoint, 4>& inner)
    {
        constexpr std::array<std::size_t, 12> kOutline{0, 1, 2, 3, 7, 11, 15, 14, 13, 12, 8, 4};
        constexpr std::array<std::size_t, 4> kInner{5, 6, 10, 9};
        PDFMeshPatch patch{{}, outline.colors};
        for (std::size_t i = 0; i < kOutline.size(); ++i)
            patch.points[kOutline[i]] = outline.points[i];
        for (std::size_t i = 0; i < kInner.size(); ++i)
            patch.points[kInner[i]] = _type == 7 ? inner[i] : coonsPoint(patch.points, kInner[i]);
        _mesh.patches.push_back(patch);
    }

    /// The inner control point that makes a surface of the outline alone, a Coons patch (ISO
    /// 32000-1, 8.7.4.5.8).
    static CGPoint coonsPoint(const std::array<CGPoint, 16>& points, std::size_t index)
    {
        // Of the nearest corner, and the steps from there along u and v.
        const std::size_t i = index / 4 == 1 ? 0 : 3;
        const std::size_t j = index % 4 == 1 ? 0 : 3;
        const auto at = [&](std::size_t fromCornerU, std::size_t fromCornerV) {
            const std::size_t row = i == 0 ? fromCornerU : 3 - fromCornerU;
            const std::size_t column = j == 0 ? fromCornerV : 3 - fromCornerV;
            return points[4 * row + column];
        };
        const auto blend = [&](auto coordinate) {
            const auto value = [&](std::size_t u, std::size_t v) { return at(u, v).*coordinate; };
            return (-4 * value(0, 0) + 6 * (value(0, 1) + value(1, 0)) - 2 * (value(0, 3) + value(3, 0))
                       + 3 * (value(3, 1) + value(1, 3)) - value(3, 3))
                / 9;
        };
        return {blend(&CGPoint::x), blend(&CGPoint::y)};
    }

    const PDFObject& _stream;
    const PDFShadingColors& _colors;
    PDFRecording& _recording;
    const int _type;
    BitReader _bits;
    std::size_t _coordinateBits = 0;
    std::size_t _componentBits = 0;
    std::size_t _flagBits = 0;
    std::size_t _components = 0;
    std::vector<PDFInterval> _decode; ///< of x, y and each component
    PDFMesh _mesh;
};

} // namespace

CGRect PDFMesh::bounds() const
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    double left = kInfinity;
    double bottom = kInfinity;
    double right = -kInfinity;
    double top = -kInfinity;
    const auto include = [&](CGPoint point) {
        left = std::min(left, point.x);
        right = std::max(right, point.x);
        bottom = std::min(bottom, point.y);
        top = std::max(top, point.y);
    };
    for (const PDFMeshVertex& vertex : vertices)
        include(vertex.point);
    for (const PDFMeshPatch& patch : patches)
        std::ranges::for_each(patch.points, include);
    return left <= right ? CGRectMake(left, bottom, right - left, top - bottom) : CGRectNull;
}

std::optional<PDFMesh> readPDFMesh(
    const PDFObject& stream, const PDFShadingColors& colors, PDFRecording& recording)
{
    MeshReader reader(stream, colors, recording);
    if (!stream.isStream() || !reader.readDictionary() || !reader.readContent())
        return std::nullopt;
    return reader.takeMesh();
}
