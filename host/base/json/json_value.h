#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include <nlohmann/json_fwd.hpp>

namespace base {
namespace json {

// The host's JSON value: a thin, owning handle over the packaged JSON
// library's document type, so that headers across the host stay free of it.
class JsonValue {
 public:
  JsonValue();
  explicit JsonValue(nlohmann::json value);
  JsonValue(JsonValue const& other);
  JsonValue(JsonValue&& other) noexcept;
  JsonValue& operator=(JsonValue const& other);
  JsonValue& operator=(JsonValue&& other) noexcept;
  ~JsonValue();

  // Parses `length` bytes of `text` starting at `offset`. With `allow_comments`
  // set, // and /* */ comments are skipped. On failure the value becomes null
  // and false is returned.
  bool ParseFromJson(char const* text, size_t length, size_t offset = 0, bool allow_comments = false);

  bool IsNull() const;
  bool IsArray() const;
  bool IsObject() const;
  bool IsString() const;
  bool IsInteger() const;
  bool IsBool() const;
  bool IsDouble() const;
  int64_t AsInteger(int64_t def = 0) const;
  std::string AsString(std::string const& def = {}) const;
  bool Has(std::string const& key) const;
  size_t Size() const;

  // Object member (created when absent, turning null into an object).
  JsonValue operator[](std::string const& key) const;
  // Array element, null when out of range.
  JsonValue operator[](size_t index) const;
  // Sets an object member.
  void SetJsonObject(std::string const& key, JsonValue const& value);
  // Appends to an array (turning null into an array).
  void AddaJsonObject(JsonValue const& value);

  std::string ToStyledString() const;
  std::string ToCompactString() const;

  nlohmann::json const& raw() const { return *value_; }
  nlohmann::json& raw() { return *value_; }

 private:
  std::unique_ptr<nlohmann::json> value_;
};

}  // namespace json
}  // namespace base
