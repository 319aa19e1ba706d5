#include "Foundation/PropertyList.h"
#include "Foundation/qt/QtConversions.h"

#include <Foundation/NSArray.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSData.h>
#include <Foundation/NSDate.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSNumber.h>

#include <QByteArray>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace {

constexpr auto kEncoding = QLatin1String("encoding");
constexpr auto kUnitsInBase64 = QLatin1String("utf16-base64");
constexpr auto kSeconds = QLatin1String("seconds");

/// True for strings that come back from XML as they were. A carriage return would come back as a line feed.
bool isPlainXML(std::u16string_view units)
{
    for (std::size_t i = 0; i < units.size(); ++i) {
        const char16_t unit = units[i];
        if ((unit < 0x20 && unit != '\t' && unit != '\n') || unit > 0xFFFD)
            return false;
        if (QChar::isSurrogate(unit)) {
            if (!QChar::isHighSurrogate(unit) || i + 1 == units.size()
                || !QChar::isLowSurrogate(units[i + 1]))
                return false;
            ++i;
        }
    }
    return true;
}

QString fromLatin1(std::string_view text)
{
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

/// The shortest text that reads back as the same double.
QString textOf(double value)
{
    if (std::isnan(value))
        return QStringLiteral("nan");
    if (std::isinf(value))
        return value > 0 ? QStringLiteral("+infinity") : QStringLiteral("-infinity");
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return fromLatin1({buffer, end});
}

template <class T> std::optional<T> numberIn(const QString& text)
{
    const QByteArray digits = text.trimmed().toLatin1();
    const char* begin = digits.data();
    const char* end = begin + digits.size();
    if (begin != end && *begin == '+')
        ++begin;
    T value{};
    const auto result = std::from_chars(begin, end, value); // reads nan, inf and infinity too
    if (begin == end || result.ec != std::errc() || result.ptr != end)
        return std::nullopt;
    return value;
}

/// "2001-01-01T00:00:00Z" and its like, which XML property lists have for dates: whole seconds of the years
/// 0 to 9999.
QString calendarText(double secondsSinceReferenceDate)
{
    using namespace std::chrono;
    constexpr auto reference = sys_days(year(2001) / 1 / 1);
    constexpr double first = duration<double>(sys_days(year(0) / 1 / 1) - reference).count();
    constexpr double end = duration<double>(sys_days(year(10000) / 1 / 1) - reference).count();
    double whole = std::floor(secondsSinceReferenceDate);
    whole = whole >= first ? std::min(whole, end - 1) : first; // NaN too
    const sys_seconds moment = reference + seconds(static_cast<std::int64_t>(whole));
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss time(moment - day);
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
        static_cast<int>(time.seconds().count()));
    return QString::fromLatin1(buffer);
}

std::optional<double> secondsOf(const QString& calendarText)
{
    using namespace std::chrono;
    int y = 0;
    unsigned m = 0;
    unsigned d = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    char z = 0;
    char more = 0;
    if (std::sscanf(calendarText.trimmed().toLatin1().constData(), "%4d-%2u-%2uT%2d:%2d:%2d%c%c", &y, &m, &d,
            &hour, &minute, &second, &z, &more)
            != 7
        || z != 'Z')
        return std::nullopt;
    const auto date = year(y) / std::chrono::month(m) / std::chrono::day(d);
    if (!date.ok() || hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 60)
        return std::nullopt;
    const auto moment = sys_days(date) + hours(hour) + minutes(minute) + seconds(second);
    return static_cast<double>((moment - sys_days(year(2001) / 1 / 1)).count());
}

class Writer {
public:
    explicit Writer(QByteArray* target)
        : _xml(target)
    {
    }

    bool write(const NSObject& root)
    {
        _xml.setAutoFormatting(true);
        _xml.setAutoFormattingIndent(-1); // one tab
        _xml.writeStartDocument();
        _xml.writeDTD(QStringLiteral("<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                     "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">"));
        _xml.writeStartElement(QStringLiteral("plist"));
        _xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
        if (!writeObject(root, 1))
            return false;
        _xml.writeEndDocument();
        return !_xml.hasError();
    }

private:
    bool writeObject(const NSObject& object, int depth)
    {
        if (depth > kDeepestPropertyList)
            return false;
        if (const auto* text = dynamic_cast<const NSBoxedString*>(&object))
            return text->string() && writeText(QStringLiteral("string"), text->string());
        if (const auto* number = dynamic_cast<const NSNumber*>(&object))
            return writeNumber(*number);
        if (const auto* date = dynamic_cast<const NSDate*>(&object))
            return writeDate(*date);
        if (const auto* data = dynamic_cast<const NSData*>(&object)) {
            const auto bytes = QByteArray::fromRawData(
                static_cast<const char*>(data->bytes()), static_cast<qsizetype>(data->length()));
            _xml.writeTextElement(QStringLiteral("data"), QString::fromLatin1(bytes.toBase64()));
            return true;
        }
        if (const auto* array = dynamic_cast<const NSArray*>(&object)) {
            _xml.writeStartElement(QStringLiteral("array"));
            for (const auto& element : *array) {
                if (!writeObject(*element, depth + 1))
                    return false;
            }
            _xml.writeEndElement();
            return true;
        }
        if (const auto* dictionary = dynamic_cast<const NSDictionary*>(&object)) {
            _xml.writeStartElement(QStringLiteral("dict"));
            for (const auto& [key, value] : *dictionary) {
                if (!writeText(QStringLiteral("key"), key) || !writeObject(*value, depth + 1))
                    return false;
            }
            _xml.writeEndElement();
            return true;
        }
        return false;
    }

    bool writeText(const QString& tag, const NSString& text)
    {
        if (isPlainXML(text.view())) {
            _xml.writeTextElement(tag, borrowedQString(text));
            return true;
        }
        QByteArray bytes;
        bytes.reserve(2 * static_cast<qsizetype>(text.length()));
        for (const char16_t unit : text.view()) {
            bytes.append(static_cast<char>(unit & 0xFF));
            bytes.append(static_cast<char>(unit >> 8));
        }
        _xml.writeStartElement(tag);
        _xml.writeAttribute(kEncoding, kUnitsInBase64);
        _xml.writeCharacters(QString::fromLatin1(bytes.toBase64()));
        _xml.writeEndElement();
        return true;
    }

    bool writeNumber(const NSNumber& number)
    {
        switch (number.kind()) {
        case NSNumber::Kind::Boolean:
            _xml.writeEmptyElement(number.boolValue() ? QStringLiteral("true") : QStringLiteral("false"));
            break;
        case NSNumber::Kind::Integer:
            _xml.writeTextElement(QStringLiteral("integer"), QString::number(number.integerValue()));
            break;
        case NSNumber::Kind::Double:
            _xml.writeTextElement(QStringLiteral("real"), textOf(number.doubleValue()));
            break;
        }
        return true;
    }

    bool writeDate(const NSDate& date)
    {
        const double seconds = date.timeIntervalSinceReferenceDate();
        const QString text = calendarText(seconds);
        _xml.writeStartElement(QStringLiteral("date"));
        if (secondsOf(text) != seconds || std::signbit(seconds) != std::signbit(*secondsOf(text)))
            _xml.writeAttribute(kSeconds, textOf(seconds));
        _xml.writeCharacters(text);
        _xml.writeEndElement();
        return true;
    }

    QXmlStreamWriter _xml;
};

class Reader {
public:
    explicit Reader(const QByteArray& source)
        : _xml(source)
    {
    }

    RetainPtr<NSObject> read()
    {
        if (!_xml.readNextStartElement() || _xml.name() != u"plist" || !_xml.readNextStartElement())
            return nullptr;
        auto root = readObject(1);
        if (!root || _xml.readNextStartElement())
            return nullptr; // damaged, or more than one
        while (!_xml.atEnd())
            _xml.readNext();
        return _xml.hasError() ? nullptr : root;
    }

private:
    /// The object whose start tag was just read; leaves the reader at its end tag.
    RetainPtr<NSObject> readObject(int depth)
    {
        if (depth > kDeepestPropertyList)
            return nullptr;
        const QString tag = _xml.name().toString();
        if (tag == u"dict")
            return readDictionary(depth);
        if (tag == u"array")
            return readArray(depth);
        if (tag == u"string") {
            const NSString text = readText();
            return text ? box(text) : nullptr;
        }
        if (tag == u"date")
            return readDate();
        const QString content = _xml.readElementText();
        if (_xml.hasError())
            return nullptr;
        if (tag == u"true" || tag == u"false")
            return content.isEmpty() ? NSNumber::numberWithBool(tag == u"true") : nullptr;
        if (tag == u"integer")
            return readInteger(content);
        if (tag == u"real") {
            const auto value = numberIn<double>(content);
            return value ? NSNumber::numberWithDouble(*value) : nullptr;
        }
        if (tag == u"data") {
            const auto bytes = decoded(content);
            return bytes ? NSData::dataWithBytes(bytes->constData(), static_cast<NSUInteger>(bytes->size()))
                         : nullptr;
        }
        return nullptr;
    }

    static RetainPtr<NSObject> readInteger(const QString& content)
    {
        if (const auto value = numberIn<NSInteger>(content))
            return NSNumber::numberWithInteger(*value);
        // Other writers know integers beyond ours.
        const auto value = numberIn<NSUInteger>(content);
        return value ? NSNumber::numberWithDouble(static_cast<double>(*value)) : nullptr;
    }

    RetainPtr<NSObject> readDate()
    {
        const QString exact = _xml.attributes().value(kSeconds).toString();
        const QString content = _xml.readElementText();
        if (_xml.hasError())
            return nullptr;
        const auto seconds = exact.isEmpty() ? secondsOf(content) : numberIn<double>(exact);
        return seconds ? NSDate::dateWithTimeIntervalSinceReferenceDate(*seconds) : nullptr;
    }

    RetainPtr<NSObject> readArray(int depth)
    {
        std::vector<RetainPtr<NSObject>> objects;
        while (_xml.readNextStartElement()) {
            objects.push_back(readObject(depth + 1));
            if (!objects.back())
                return nullptr;
        }
        return _xml.hasError() ? nullptr : make<NSArray>(std::move(objects));
    }

    RetainPtr<NSObject> readDictionary(int depth)
    {
        NSDictionary::Map entries;
        while (_xml.readNextStartElement()) {
            if (_xml.name() != u"key")
                return nullptr;
            const NSString key = readText();
            if (!key || !_xml.readNextStartElement())
                return nullptr;
            auto value = readObject(depth + 1);
            if (!value)
                return nullptr;
            entries.insert_or_assign(key, std::move(value));
        }
        return _xml.hasError() ? nullptr : make<NSDictionary>(std::move(entries));
    }

    /// The string of the element whose start tag was just read; null when it is damaged.
    NSString readText()
    {
        const auto attributes = _xml.attributes();
        const bool isEncoded = attributes.value(kEncoding) == kUnitsInBase64;
        const QString content = _xml.readElementText();
        if (_xml.hasError())
            return nullptr;
        if (!isEncoded)
            return NSString(std::u16string_view(reinterpret_cast<const char16_t*>(content.constData()),
                static_cast<std::size_t>(content.size())));
        const auto bytes = decoded(content);
        if (!bytes || bytes->size() % 2 != 0)
            return nullptr;
        std::u16string units;
        for (qsizetype i = 0; i < bytes->size(); i += 2)
            units += static_cast<char16_t>(
                static_cast<unsigned char>((*bytes)[i]) | static_cast<unsigned char>((*bytes)[i + 1]) << 8);
        return NSString(std::u16string_view(units));
    }

    static std::optional<QByteArray> decoded(const QString& base64)
    {
        QByteArray digits = base64.toLatin1();
        digits.removeIf([](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
        auto result =
            QByteArray::fromBase64Encoding(std::move(digits), QByteArray::AbortOnBase64DecodingErrors);
        if (!result)
            return std::nullopt;
        return *result;
    }

    QXmlStreamReader _xml;
};

} // namespace

std::optional<std::string> writePropertyList(const NSObject& object)
{
    QByteArray xml;
    if (!Writer(&xml).write(object))
        return std::nullopt;
    return std::string(xml.constData(), static_cast<std::size_t>(xml.size()));
}

RetainPtr<NSObject> readPropertyList(std::string_view xml)
{
    return Reader(QByteArray::fromRawData(xml.data(), static_cast<qsizetype>(xml.size()))).read();
}
