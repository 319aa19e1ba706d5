#pragma once

// Classes to be archived, and ways in and out of an archive that check the error as well.

#include "DataText.h"

#include <Foundation/Foundation.h>

#include <gtest/gtest.h>
#include <limits>
#include <string>

/// Something of every kind that a coder takes.
class Sample : public NSObject, public NSSecureCoding {
public:
    bool flag = false;
    NSInteger count = 0;
    double ratio = 0;
    NSString name;
    RetainPtr<NSData> data;
    RetainPtr<Sample> next;
    RetainPtr<NSArray> list;
    static inline int made = 0;

    void encodeWithCoder(NSCoder* coder) const override
    {
        coder->encodeBool(flag, "flag");
        coder->encodeInteger(count, "count");
        coder->encodeDouble(ratio, "ratio");
        coder->encodeString(name, "name");
        coder->encodeObject(data, "data");
        coder->encodeObject(next, "next");
        coder->encodeObject(list, "list");
    }
    static RetainPtr<NSObject> initWithCoder(NSCoder* coder)
    {
        ++made;
        auto sample = make<Sample>();
        sample->decode(coder);
        return sample;
    }

protected:
    void decode(NSCoder* coder)
    {
        flag = coder->decodeBoolForKey("flag");
        count = coder->decodeIntegerForKey("count");
        ratio = coder->decodeDoubleForKey("ratio");
        name = coder->decodeStringForKey("name");
        data = coder->decodeObjectOfClass<NSData>("data");
        next = coder->decodeObjectOfClass<Sample>("next");
        list = coder->decodeObjectOfClass<NSArray>("list");
    }
};

/// Derived from a class that is allowed.
class SpecialSample : public Sample {
public:
    static RetainPtr<NSObject> initWithCoder(NSCoder* coder)
    {
        auto sample = make<SpecialSample>();
        sample->decode(coder);
        return sample;
    }
};

/// Of another kind; counts how often one is made from an archive.
class Unrelated : public NSObject, public NSSecureCoding {
public:
    static inline int made = 0;

    void encodeWithCoder(NSCoder*) const override { }
    static RetainPtr<NSObject> initWithCoder(NSCoder*)
    {
        ++made;
        return make<Unrelated>();
    }
};

inline RetainPtr<NSData> archived(const RetainPtr<NSObject>& object)
{
    RetainPtr<NSError> error;
    auto data = NSKeyedArchiver::archivedDataWithRootObject(object, true, &error);
    EXPECT_TRUE(data) << (error ? error->localizedDescription().UTF8String() : "");
    EXPECT_FALSE(error);
    return data;
}

template <class T> RetainPtr<T> unarchived(const RetainPtr<NSData>& data)
{
    RetainPtr<NSError> error;
    auto object = NSKeyedUnarchiver::unarchivedObjectOfClass<T>(data, &error);
    EXPECT_EQ(!object, static_cast<bool>(error));
    return object;
}

inline std::string replaced(std::string text, const std::string& what, const std::string& by)
{
    const auto at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return text.replace(at, what.size(), by);
}

inline RetainPtr<Sample> sample()
{
    auto next = make<SpecialSample>();
    next->name = "the next";
    auto result = make<Sample>();
    result->flag = true;
    result->count = std::numeric_limits<NSInteger>::min();
    result->ratio = 0.1 + 0.2;
    result->name = NSString(std::string_view("n\0\x01\xC3\xA9", 5));
    result->data = NSData::dataWithBytes("\0\xFF", 2);
    result->next = next;
    NSDictionary::Map map;
    map.emplace("date", NSDate::dateWithTimeIntervalSinceReferenceDate(0.1));
    map.emplace("null", NSNull::null());
    result->list = make<NSArray>(std::vector<RetainPtr<NSObject>>{NSNumber::numberWithBool(true),
        NSNumber::numberWithInteger(1), NSNumber::numberWithDouble(1), box("x"), make<NSDictionary>(map)});
    return result;
}
