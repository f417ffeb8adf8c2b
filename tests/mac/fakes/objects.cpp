#include "tests/mac/fakes/objects.h"

#include <algorithm>

namespace recordingFakes {

namespace {

std::vector<std::unique_ptr<Object>>& constants() {
    static std::vector<std::unique_ptr<Object>> instance;
    return instance;
}

Object* objectAt(CFTypeRef reference) {
    for (const auto* objects : {&constants(), &heap().objects}) {
        for (const std::unique_ptr<Object>& object : *objects) {
            if (reference == object.get()) return object.get();
        }
    }
    return nullptr;
}

}  // namespace

Kind kindOf(const Value& value) {
    if (std::holds_alternative<std::u16string>(value)) return string;
    if (std::holds_alternative<bool>(value)) return boolean;
    if (std::holds_alternative<Array>(value)) return array;
    return number;
}

std::string nameOf(CFTypeID kind) {
    switch (kind) {
        case string: return "CFString";
        case number: return "CFNumber";
        case boolean: return "CFBoolean";
        case array: return "CFArray";
        case dictionary: return "CFDictionary";
        case locale: return "CFLocale";
        case dateFormatter: return "CFDateFormatter";
        default: return "CFURL";
    }
}

Heap& heap() {
    static Heap instance;
    return instance;
}

Object& newObject(Kind kind, const Value& value, const std::string& origin) {
    heap().objects.push_back(std::make_unique<Object>(Object{kind, value, origin}));
    return *heap().objects.back();
}

Object& newConstant(Kind kind, const Value& value, const std::string& origin) {
    constants().push_back(std::make_unique<Object>(Object{kind, value, origin, true}));
    return *constants().back();
}

Object* livingObject(CFTypeRef reference, const std::string& function) {
    Object* object = objectAt(reference);
    if (object == nullptr) {
        ADD_FAILURE() << function << " was given " << (reference == nullptr ? "null" : "what is no object");
        return nullptr;
    }
    if (object->references == 0) {
        ADD_FAILURE() << function << " was given a " << object->name() << " after its release";
        return nullptr;
    }
    return object;
}

Object* livingObject(CFTypeRef reference, Kind kind, const std::string& function) {
    Object* object = livingObject(reference, function);
    if (object != nullptr && object->kind != kind) {
        ADD_FAILURE() << function << " was given a " << object->name() << " instead of a " << nameOf(kind);
        return nullptr;
    }
    return object;
}

void expectUtf8(CFStringEncoding encoding, const std::string& function) {
    EXPECT_EQ(encoding, kCFStringEncodingUTF8) << function;
}

void record(const std::string& function, const std::string& arguments) {
    mac().calls.push_back(function + "(" + arguments + ")");
}

std::string_view viewOf(const UInt8* bytes, CFIndex count) {
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count)};
}

std::vector<std::string> Mac::callsOf(std::string_view function) const {
    std::vector<std::string> found;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(found),
                 [function](std::string_view call) { return call.substr(0, call.find('(')) == function; });
    return found;
}

Mac& mac() {
    static Mac instance;
    return instance;
}

CFTypeRef makeObject(const Value& value, const std::string& origin) {
    return referenceTo<CFTypeRef>(newObject(kindOf(value), value, origin));
}

void expectNothingLeftToRelease() {
    for (const std::unique_ptr<Object>& object : heap().objects) {
        if (!object->isConstant && object->references != 0) ADD_FAILURE() << object->name() << " was never released";
    }
    for (const auto& [handle, service] : heap().services) {
        if (service.references != 0) ADD_FAILURE() << "service " << handle << " was never released";
    }
}

void MacTest::SetUp() {
    heap() = {};
    mac() = {};
}

void MacTest::TearDown() { expectNothingLeftToRelease(); }

}  // namespace recordingFakes
