// A process of its own for the tests of user defaults: DefaultsWriter <file> <command> [argument …]
//
//   set <prefix> <count> <text>   sets <prefix>0, <prefix>1 … to the text and their number, and prints each
//                          number once it is set
//   typed                  sets one value of every type
//   describe               prints the type and value of every value that `typed` sets
//   die <key> <number>     sets a number and is killed at once
//   starve <megabytes>     prints the value under "key", which no more memory may be taken to read, and sets
//   another

#include <Foundation/Foundation.h>

#include "Foundation/testing/UserDefaultsFile.h"

#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

namespace {

/// Lets the process take so many more bytes of address space than it has now.
void limitMemory(rlim_t bytes)
{
    long pages = 0;
    std::FILE* sizes = std::fopen("/proc/self/statm", "r");
    if (!sizes || std::fscanf(sizes, "%ld", &pages) != 1)
        std::exit(3);
    std::fclose(sizes);
    const rlim_t most = static_cast<rlim_t>(pages) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + bytes;
    const rlimit limit{most, most};
    if (setrlimit(RLIMIT_AS, &limit) != 0)
        std::exit(3);
}

RetainPtr<NSNumber> integer(NSInteger value)
{
    return NSNumber::numberWithInteger(value);
}

void setTyped(NSUserDefaults& defaults)
{
    defaults.setBool(true, "yes");
    defaults.setBool(false, "no");
    defaults.setInteger(1, "one");
    defaults.setInteger(std::numeric_limits<NSInteger>::min(), "least");
    defaults.setInteger(std::numeric_limits<NSInteger>::max(), "most");
    defaults.setDouble(1, "real one");
    defaults.setDouble(0.1 + 0.2, "inexact");
    defaults.setDouble(-0.0, "minus zero");
    defaults.setDouble(5e-324, "tiny");
    defaults.setDouble(std::numeric_limits<double>::max(), "huge");
    defaults.setDouble(-HUGE_VAL, "infinite");
    defaults.setDouble(NAN, "nan");
    defaults.setObject("", "empty text");
    defaults.setObject(" a <b> & \"c\"\t\n\xC3\xA9 ", "text");
    defaults.setObject(NSString(std::string_view("\0\x01\x1b\r\n", 5)), "controls");
    defaults.setObject(NSString(u"\xD800 \xFFFF"), "half a character");
    defaults.setObject("value", NSString(std::string_view("key\x02\0", 5)));
    defaults.setObject(NSDate::dateWithTimeIntervalSinceReferenceDate(123456789), "date");
    defaults.setObject(NSDate::dateWithTimeIntervalSinceReferenceDate(-0.3), "fine date");
    defaults.setObject(NSDate::dateWithTimeIntervalSinceReferenceDate(1e15), "far date");
    defaults.setObject(NSData::dataWithBytes("\0\xFF\x7F", 3), "data");
    defaults.setObject(NSData::data(), "no data");
    defaults.setObject(make<NSArray>(), "no array");
    NSDictionary::Map inner;
    inner.emplace("list", make<NSArray>(std::vector<RetainPtr<NSObject>>{integer(7), box("x")}));
    inner.emplace("none", make<NSDictionary>());
    defaults.setObject(
        make<NSArray>(std::vector<RetainPtr<NSObject>>{make<NSDictionary>(std::move(inner))}), "nested");
}

void describe(const NSObject* object, std::string& out)
{
    char buffer[64];
    if (const auto* number = dynamic_cast<const NSNumber*>(object)) {
        switch (number->kind()) {
        case NSNumber::Kind::Boolean:
            out += number->boolValue() ? "bool true" : "bool false";
            return;
        case NSNumber::Kind::Integer:
            out += "integer " + std::to_string(number->integerValue());
            return;
        case NSNumber::Kind::Double:
            std::snprintf(buffer, sizeof buffer, "double %a", number->doubleValue());
            out += buffer;
            return;
        }
    } else if (const auto* text = dynamic_cast<const NSBoxedString*>(object)) {
        out += "text";
        for (const char16_t unit : text->string().view()) {
            std::snprintf(buffer, sizeof buffer, " %x", unit);
            out += buffer;
        }
    } else if (const auto* date = dynamic_cast<const NSDate*>(object)) {
        std::snprintf(buffer, sizeof buffer, "date %a", date->timeIntervalSinceReferenceDate());
        out += buffer;
    } else if (const auto* data = dynamic_cast<const NSData*>(object)) {
        out += "data";
        for (const std::byte byte : data->span()) {
            std::snprintf(buffer, sizeof buffer, " %x", static_cast<unsigned>(byte));
            out += buffer;
        }
    } else if (const auto* array = dynamic_cast<const NSArray*>(object)) {
        out += "[";
        for (const auto& element : *array) {
            describe(element, out);
            out += ",";
        }
        out += "]";
    } else if (const auto* dictionary = dynamic_cast<const NSDictionary*>(object)) {
        out += "{";
        for (const auto& [key, value] : *dictionary) {
            out += key.UTF8String() + ":";
            describe(value, out);
            out += ",";
        }
        out += "}";
    } else {
        out += "nothing";
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    const UserDefaultsFile file{NSString(argv[1])};
    NSUserDefaults& defaults = *NSUserDefaults::standardUserDefaults();
    const std::string command = argv[2];
    if (command == "set" && argc == 6) {
        for (int i = 0; i < std::atoi(argv[4]); ++i) {
            NSDictionary::Map entry;
            entry.emplace("number", integer(i));
            entry.emplace("text", box(NSString(argv[5])));
            defaults.setObject(make<NSDictionary>(std::move(entry)), NSString(argv[3] + std::to_string(i)));
            std::printf("%d\n", i);
            std::fflush(stdout);
        }
    } else if (command == "typed") {
        setTyped(defaults);
    } else if (command == "describe") {
        for (const char* key : {"yes", "no", "one", "least", "most", "real one", "inexact", "minus zero",
                 "tiny", "huge", "infinite", "nan", "empty text", "text", "controls", "half a character",
                 "date", "fine date", "far date", "data", "no data", "no array", "nested"}) {
            std::string line = std::string(key) + " = ";
            describe(defaults.objectForKey(key).get(), line);
            std::puts(line.c_str());
        }
        std::string line = "odd key = ";
        describe(defaults.objectForKey(NSString(std::string_view("key\x02\0", 5))).get(), line);
        std::puts(line.c_str());
    } else if (command == "die" && argc == 5) {
        defaults.setInteger(std::atoi(argv[4]), argv[3]);
        raise(SIGKILL);
    } else if (command == "starve" && argc == 4) {
        limitMemory(static_cast<rlim_t>(std::atoi(argv[3])) << 20);
        std::string line;
        describe(defaults.objectForKey("key").get(), line);
        defaults.setInteger(1, "other");
        std::puts(line.c_str());
    } else {
        return 2;
    }
    return 0;
}
