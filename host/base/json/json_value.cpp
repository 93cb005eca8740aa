#include "base/json/json_value.h"

#include <nlohmann/json.hpp>

#include "base/log/log.h"
#include "base/variant/variant.h"

namespace base {
namespace json {

namespace {
using Json = nlohmann::json;

std::string Dump(Json const& value, int indent) {
  return value.dump(indent, ' ', false, Json::error_handler_t::replace);
}
}  // namespace

JsonValue::JsonValue() : value_(std::make_unique<Json>()) {}

JsonValue::JsonValue(nlohmann::json value) : value_(std::make_unique<Json>(std::move(value))) {}

JsonValue::JsonValue(JsonValue const& other) : value_(std::make_unique<Json>(*other.value_)) {}

// The moved-from handle keeps a (null) document, so every call on it stays valid.
JsonValue::JsonValue(JsonValue&& other) noexcept : value_(std::make_unique<Json>(std::move(*other.value_))) {}

JsonValue& JsonValue::operator=(JsonValue const& other) {
  if (this != &other) *value_ = *other.value_;
  return *this;
}

JsonValue& JsonValue::operator=(JsonValue&& other) noexcept {
  if (this != &other) *value_ = std::move(*other.value_);
  return *this;
}

JsonValue::~JsonValue() = default;

bool JsonValue::ParseFromJson(char const* text, size_t length, size_t offset, bool allow_comments) {
  if (!text || offset > length) {
    *value_ = nullptr;
    return false;
  }
  // Containers nested deeper than a Variant may hold are refused: every walk
  // of the document (writing it, converting it) recurses once a level.
  bool too_deep = false;
  const Json::parser_callback_t bound = [&too_deep](int depth, Json::parse_event_t event, Json&) {
    if ((event == Json::parse_event_t::object_start || event == Json::parse_event_t::array_start) &&
        depth >= variant::Variant::kMaxDepth) {
      too_deep = true;
      return false;
    }
    return true;
  };
  Json parsed = Json::parse(text + offset, text + offset + length, bound, false, allow_comments);
  if (too_deep) {
    TXLOG_WARN << "[json] JSON nested deeper than " << variant::Variant::kMaxDepth << " levels refused";
    *value_ = nullptr;
    return false;
  }
  if (parsed.is_discarded()) {
    *value_ = nullptr;
    return false;
  }
  *value_ = std::move(parsed);
  return true;
}

bool JsonValue::IsNull() const { return value_->is_null(); }
bool JsonValue::IsArray() const { return value_->is_array(); }
bool JsonValue::IsObject() const { return value_->is_object(); }
bool JsonValue::IsString() const { return value_->is_string(); }
bool JsonValue::IsInteger() const { return value_->is_number_integer(); }
bool JsonValue::IsBool() const { return value_->is_boolean(); }
bool JsonValue::IsDouble() const { return value_->is_number_float(); }

int64_t JsonValue::AsInteger(int64_t def) const {
  if (value_->is_number_unsigned()) return static_cast<int64_t>(value_->get<uint64_t>());
  if (value_->is_number_integer()) return value_->get<int64_t>();
  return def;
}

std::string JsonValue::AsString(std::string const& def) const {
  return value_->is_string() ? value_->get_ref<std::string const&>() : def;
}

bool JsonValue::Has(std::string const& key) const { return value_->is_object() && value_->contains(key); }

size_t JsonValue::Size() const {
  return (value_->is_object() || value_->is_array()) ? value_->size() : 0;
}

JsonValue JsonValue::operator[](std::string const& key) const {
  if (value_->is_null()) *value_ = Json::object();
  if (!value_->is_object()) return JsonValue();
  return JsonValue((*value_)[key]);
}

JsonValue JsonValue::operator[](size_t index) const {
  if (!value_->is_array() || index >= value_->size()) return JsonValue();
  return JsonValue((*value_)[index]);
}

void JsonValue::SetJsonObject(std::string const& key, JsonValue const& value) {
  if (value_->is_null()) *value_ = Json::object();
  if (value_->is_object()) (*value_)[key] = *value.value_;
}

void JsonValue::AddaJsonObject(JsonValue const& value) {
  if (value_->is_null()) *value_ = Json::array();
  if (value_->is_array()) value_->push_back(*value.value_);
}

std::string JsonValue::ToStyledString() const { return Dump(*value_, 4); }

std::string JsonValue::ToCompactString() const { return Dump(*value_, -1); }

}  // namespace json
}  // namespace base
