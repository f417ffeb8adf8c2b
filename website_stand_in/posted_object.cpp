#include "website_stand_in/posted_object.h"

#include <algorithm>
#include <set>

namespace websiteStandIn {

namespace {

std::string sentenceAbout(std::string_view name, std::string_view predicate) {
    return std::string("The member \"").append(name).append("\" ").append(predicate).append(".");
}

}  // namespace

template <typename Value>
Value PostedObject::valueOf(std::string_view name, std::string_view kind) {
    askedFor_.push_back(name);
    const platform::JsonValue* member = object_.find(name);
    const Value* value = std::get_if<Value>(member);
    if (value != nullptr) return *value;

    const std::string predicate = member == nullptr ? "is missing" : std::string("must be ").append(kind);
    if (!complaint_) complaint_ = sentenceAbout(name, predicate);
    return {};
}

std::string PostedObject::text(std::string_view name) { return valueOf<std::string>(name, "a string"); }

std::int64_t PostedObject::integer(std::string_view name) { return valueOf<std::int64_t>(name, "an integer"); }

std::optional<std::string> PostedObject::complaint() const {
    if (complaint_) return complaint_;

    std::set<std::string_view> seen;
    for (const auto& [name, value] : object_.members()) {
        const bool known = std::find(askedFor_.begin(), askedFor_.end(), name) != askedFor_.end();
        if (!known) return sentenceAbout(name, "is unknown");
        if (!seen.insert(name).second) return sentenceAbout(name, "is given twice");
    }
    return std::nullopt;
}

}  // namespace websiteStandIn
