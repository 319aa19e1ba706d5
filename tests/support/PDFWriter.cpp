#include "support/PDFWriter.h"

#include <array>
#include <cstdio>
#include <stdexcept>
#include <zlib.h>

namespace {

constexpr std::string_view flate = "/Filter /FlateDecode";

std::string tableLine(std::size_t offset)
{
    std::array<char, 21> line{};
    std::snprintf(line.data(), line.size(), "%010zu 00000 n \n", offset);
    return line.data();
}

} // namespace

std::string deflated(std::string_view bytes)
{
    return deflated(bytes, 1);
}

std::string deflated(std::string_view bytes, std::size_t times)
{
    z_stream stream{};
    if (deflateInit(&stream, Z_BEST_SPEED) != Z_OK)
        throw std::runtime_error("zlib does not start");
    std::string result;
    std::array<unsigned char, 65536> output;
    for (std::size_t i = 0; i < times; ++i) {
        const bool isLast = i + 1 == times;
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
        stream.avail_in = static_cast<uInt>(bytes.size());
        do {
            stream.next_out = output.data();
            stream.avail_out = output.size();
            deflate(&stream, isLast ? Z_FINISH : Z_NO_FLUSH);
            result.append(reinterpret_cast<const char*>(output.data()), output.size() - stream.avail_out);
        } while (stream.avail_out == 0);
    }
    deflateEnd(&stream);
    return result;
}

PDFWriter& PDFWriter::object(int number, std::string body)
{
    _objects[number] = std::move(body);
    return *this;
}

PDFWriter& PDFWriter::stream(int number, std::string_view bytes, std::string_view entries)
{
    return rawStream(number, deflated(bytes), std::string(entries) + " " + std::string(flate));
}

PDFWriter& PDFWriter::rawStream(int number, std::string_view bytes, std::string_view entries)
{
    std::string body =
        "<< " + std::string(entries) + " /Length " + std::to_string(bytes.size()) + " >>\nstream\n";
    body.append(bytes).append("\nendstream");
    return object(number, std::move(body));
}

PDFWriter& PDFWriter::trailer(std::string entries)
{
    _trailer = std::move(entries);
    return *this;
}

std::string PDFWriter::file() const
{
    std::string result = "%PDF-1.7\n";
    const int count = _objects.empty() ? 1 : _objects.rbegin()->first + 1;
    std::map<int, std::size_t> offsets;
    for (const auto& [number, body] : _objects) {
        offsets[number] = result.size();
        result += std::to_string(number) + " 0 obj\n";
        result.append(body).append("\nendobj\n");
    }
    const std::size_t table = result.size();
    result += "xref\n0 " + std::to_string(count) + "\n0000000000 65535 f \n";
    for (int number = 1; number < count; ++number) {
        const auto found = offsets.find(number);
        result += found == offsets.end() ? "0000000000 65535 f \n" : tableLine(found->second);
    }
    result += "trailer\n<< /Size " + std::to_string(count) + " /Root 1 0 R " + _trailer + " >>\nstartxref\n";
    return result + std::to_string(table) + "\n%%EOF\n";
}

namespace {

PDFWriter emptyPageWriter(std::string_view resources, std::string_view mediaBox)
{
    PDFWriter writer;
    writer.object(1, "<< /Type /Catalog /Pages 2 0 R >>")
        .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>");
    writer.object(3,
        "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /MediaBox [" + std::string(mediaBox)
            + "] /Resources << " + std::string(resources) + " >> >>");
    return writer;
}

} // namespace

PDFWriter pageWriter(std::string_view content, std::string_view resources, std::string_view mediaBox)
{
    return emptyPageWriter(resources, mediaBox).stream(4, content);
}

PDFWriter pageWriterWithDeflatedContent(std::string_view content, std::string_view resources)
{
    return emptyPageWriter(resources, "0 0 100 100").rawStream(4, content, flate);
}
