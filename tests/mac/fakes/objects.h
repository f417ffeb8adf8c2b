// The objects of the fake frameworks: each has a kind, an origin and a count of references.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tests/mac/recording_fakes.h"

namespace recordingFakes {

enum Kind : CFTypeID { string = 1, number, boolean, array, dictionary, locale, dateFormatter, url };

[[nodiscard]] Kind kindOf(const Value& value);
[[nodiscard]] std::string nameOf(CFTypeID kind);

struct Object {
    Kind kind;
    Value value;
    std::string origin;
    bool isConstant = false;
    int references = 1;
    std::map<std::u16string, Object*> entries{};  // Of a dictionary; of an array by u"0", u"1". Nobody else owns them.

    [[nodiscard]] std::string name() const { return nameOf(kind) + " of " + origin; }
};

struct Service {
    int references = 1;
};

// Released objects stay until the test ends, so that using one fails instead of crashing.
struct Heap {
    std::vector<std::unique_ptr<Object>> objects;
    std::map<io_object_t, Service> services;
};

Heap& heap();

template <typename Reference>
Reference referenceTo(Object& object) {
    return static_cast<Reference>(static_cast<void*>(&object));
}

Object& newObject(Kind kind, const Value& value, const std::string& origin);

// A constant that lives as long as the process.
Object& newConstant(Kind kind, const Value& value, const std::string& origin);

// The object for `reference`. If it must not be used, the test fails and the result is null.
Object* livingObject(CFTypeRef reference, const std::string& function);
Object* livingObject(CFTypeRef reference, Kind kind, const std::string& function);

template <typename Held>
Held valueOf(CFTypeRef reference, Kind kind, const std::string& function) {
    const Object* object = livingObject(reference, kind, function);
    return object == nullptr ? Held{} : std::get<Held>(object->value);
}

void expectUtf8(CFStringEncoding encoding, const std::string& function);

void record(const std::string& function, const std::string& arguments = {});

[[nodiscard]] std::string_view viewOf(const UInt8* bytes, CFIndex count);

}  // namespace recordingFakes
