#include <Foundation/NSJSONSerialization.h>

#include "Foundation/CocoaError.h"
#include "Foundation/qt/QtConversions.h"

#include <Foundation/NSArray.h>
#include <Foundation/NSData.h>
#include <Foundation/NSNull.h>
#include <Foundation/NSNumber.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringDecoder>
#include <cmath>
#include <optional>

namespace {

/// Deeper JSON is refused, reading and writing: neither must run out of stack.
constexpr int kDeepestJSON = 512;

/// The bytes as UTF-8 without a byte order mark; nothing when they are no text. UTF-8 is left for the parser
/// to check.
std::optional<QByteArray> asUTF8(const QByteArray& bytes)
{
    // JSON begins with two ASCII characters, or is a single one: zero bytes show the encoding.
    const auto at = [&](qsizetype i) { return i < bytes.size() ? bytes[i] : '\x01'; };
    auto encoding = QStringConverter::encodingForData(bytes).value_or(QStringConverter::Utf8);
    if (encoding == QStringConverter::Utf8 && bytes.size() >= 2 && (at(0) == 0 || at(1) == 0)) {
        const bool isBig = at(0) == 0;
        const bool isFourBytes = isBig ? at(1) == 0 : at(2) == 0 && at(3) == 0;
        encoding = isFourBytes ? (isBig ? QStringConverter::Utf32BE : QStringConverter::Utf32LE)
                               : (isBig ? QStringConverter::Utf16BE : QStringConverter::Utf16LE);
    }
    if (encoding == QStringConverter::Utf8)
        return bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes;
    QStringDecoder decoder(encoding);
    QString text = decoder(bytes);
    if (decoder.hasError())
        return std::nullopt;
    if (text.startsWith(QChar::ByteOrderMark))
        text.remove(0, 1);
    return text.toUtf8();
}

RetainPtr<NSObject> objectFrom(const QJsonValue& value, int depth)
{
    if (depth > kDeepestJSON)
        return nullptr;
    switch (value.type()) {
    case QJsonValue::Null:
        return NSNull::null();
    case QJsonValue::Bool:
        return NSNumber::numberWithBool(value.toBool());
    case QJsonValue::Double:
        // Two different defaults come back for a number that is not an integer.
        if (value.toInteger(0) == value.toInteger(1))
            return NSNumber::numberWithInteger(value.toInteger());
        return NSNumber::numberWithDouble(value.toDouble());
    case QJsonValue::String:
        return box(fromQString(value.toString()));
    case QJsonValue::Array: {
        const QJsonArray array = value.toArray();
        std::vector<RetainPtr<NSObject>> objects;
        objects.reserve(static_cast<std::size_t>(array.size()));
        for (const auto& element : array) {
            objects.push_back(objectFrom(element, depth + 1));
            if (!objects.back())
                return nullptr;
        }
        return make<NSArray>(std::move(objects));
    }
    case QJsonValue::Object: {
        const QJsonObject object = value.toObject();
        NSDictionary::Map entries;
        for (auto at = object.begin(); at != object.end(); ++at) {
            auto entry = objectFrom(at.value(), depth + 1);
            if (!entry)
                return nullptr;
            entries.emplace(fromQString(at.key()), std::move(entry));
        }
        return make<NSDictionary>(std::move(entries));
    }
    case QJsonValue::Undefined:
        break;
    }
    return nullptr;
}

/// The JSON value for an object; Undefined when there is none.
QJsonValue valueFrom(const NSObject& object, int depth)
{
    QJsonValue none(QJsonValue::Undefined);
    if (depth > kDeepestJSON)
        return none;
    if (dynamic_cast<const NSNull*>(&object))
        return QJsonValue(QJsonValue::Null);
    if (const auto* text = dynamic_cast<const NSBoxedString*>(&object))
        return text->string() ? QJsonValue(toQString(text->string())) : none;
    if (const auto* number = dynamic_cast<const NSNumber*>(&object)) {
        if (number->kind() == NSNumber::Kind::Boolean)
            return number->boolValue();
        if (number->kind() == NSNumber::Kind::Integer)
            return QJsonValue(static_cast<qint64>(number->integerValue()));
        return std::isfinite(number->doubleValue()) ? QJsonValue(number->doubleValue()) : none;
    }
    if (const auto* array = dynamic_cast<const NSArray*>(&object)) {
        QJsonArray values;
        for (const auto& element : *array) {
            const QJsonValue value = valueFrom(*element, depth + 1);
            if (value.isUndefined())
                return none;
            values.append(value);
        }
        return values;
    }
    if (const auto* dictionary = dynamic_cast<const NSDictionary*>(&object)) {
        QJsonObject values;
        for (const auto& [key, element] : *dictionary) {
            const QJsonValue value = valueFrom(*element, depth + 1);
            if (value.isUndefined())
                return none;
            values.insert(toQString(key), value);
        }
        return values;
    }
    return none;
}

} // namespace

RetainPtr<NSObject> NSJSONSerialization::JSONObjectWithData(
    const NSData* data, NSUInteger options, RetainPtr<NSError>* error)
{
    if (error)
        *error = nullptr;
    const auto refuse = [error](const QString& why) {
        setCocoaError(error, NSPropertyListReadCorruptError, fromQString(why));
        return nullptr;
    };
    if (!data || data->length() == 0)
        return refuse(QStringLiteral("The data is empty."));
    auto text = asUTF8(QByteArray::fromRawData(
        static_cast<const char*>(data->bytes()), static_cast<qsizetype>(data->length())));
    if (!text)
        return refuse(QStringLiteral("The data is not text in UTF-8, UTF-16 or UTF-32."));
    // Qt reads arrays and objects only. A fragment is what may be the one element of an array.
    const bool isFragmentAllowed = options & NSJSONReadingFragmentsAllowed;
    if (isFragmentAllowed)
        *text = '[' + *text + ']';
    QJsonParseError failure;
    auto document = QJsonDocument::fromJson(*text, &failure);
    if (failure.error != QJsonParseError::NoError)
        return refuse(QStringLiteral("The text is not JSON: %1 at byte %2.")
                          .arg(failure.errorString())
                          .arg(failure.offset - (isFragmentAllowed ? 1 : 0)));
    if (text->contains("\"\xEF\xBB\xBF")) {
        // Qt takes a character U+FEFF at the start of a string for a byte order mark, unless it is escaped.
        document = QJsonDocument::fromJson(text->replace("\"\xEF\xBB\xBF", "\"\\ufeff"));
    }
    if (isFragmentAllowed && document.array().size() != 1)
        return refuse(QStringLiteral("The text has more than one JSON value, or none."));
    const QJsonValue root = isFragmentAllowed ? document.array().first()
        : document.isArray()                  ? QJsonValue(document.array())
                                              : QJsonValue(document.object());
    if (auto object = objectFrom(root, 1))
        return object;
    return refuse(QStringLiteral("The JSON is nested too deeply."));
}

RetainPtr<NSData> NSJSONSerialization::dataWithJSONObject(
    const NSObject* object, NSUInteger options, RetainPtr<NSError>* error)
{
    if (error)
        *error = nullptr;
    const auto refuse = [error](const char* why) {
        setCocoaError(error, NSPropertyListWriteInvalidError, why);
        return nullptr;
    };
    if (!object)
        return refuse("There is no object to write.");
    const QJsonValue root = valueFrom(*object, 1);
    if (root.isUndefined())
        return refuse("JSON cannot represent the object, or it is nested too deeply.");
    const auto format =
        options & NSJSONWritingPrettyPrinted ? QJsonDocument::Indented : QJsonDocument::Compact;
    QByteArray text;
    if (root.isObject()) {
        text = QJsonDocument(root.toObject()).toJson(format);
    } else if (root.isArray()) {
        text = QJsonDocument(root.toArray()).toJson(format);
    } else if (options & NSJSONWritingFragmentsAllowed) {
        text = QJsonDocument(QJsonArray{root}).toJson(QJsonDocument::Compact);
        text = text.mid(1, text.size() - 2);
    } else {
        return refuse("The object is neither an array nor a dictionary.");
    }
    return NSData::dataWithBytes(text.constData(), static_cast<NSUInteger>(text.size()));
}
