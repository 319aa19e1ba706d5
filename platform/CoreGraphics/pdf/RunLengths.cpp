#include "CoreGraphics/pdf/RunLengths.h"

#include "CoreGraphics/pdf/PDFBudget.h"

bool hasRunLengths(const PDFObject& filters)
{
    for (std::size_t index = 0; index < filters.size(); ++index) {
        if (hasRunLengths(filters.at(index)))
            return true;
    }
    return filters.isName("RunLengthDecode") || filters.isName("RL");
}

std::string decodedRunLengths(std::string_view bytes, std::size_t most)
{
    // ISO 32000-1, 7.4.5: a length below 128 is followed by bytes to copy, one more than it says; 128 ends
    // the data; from 129 on, the next byte is repeated 257 times less the length.
    constexpr unsigned kEnd = 128;
    constexpr unsigned kRepeatBase = 257;
    std::string result;
    const auto makeRoom = [&](std::size_t count) {
        if (count > most - result.size())
            throw PDFLimitExceeded{"decoded bytes"};
    };
    std::size_t position = 0;
    while (position < bytes.size()) {
        const auto length = static_cast<unsigned char>(bytes[position++]);
        if (length == kEnd)
            break;
        if (length < kEnd) {
            const auto copied = bytes.substr(position, length + 1U);
            makeRoom(copied.size());
            result += copied;
            position += copied.size();
        } else if (position < bytes.size()) {
            makeRoom(kRepeatBase - length);
            result.append(kRepeatBase - length, bytes[position++]);
        }
    }
    return result;
}
