#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace base {
namespace json {
class JsonValue;
}

namespace variant {

// The type lives in the low four bits of the tag word; the upper bits are free
// for flags (the double constructor's flag is kept there).
enum VariantType : uint32_t {
  kVariantTypeNull = 0,
  kVariantTypeBool = 1,
  kVariantTypeString = 2,
  kVariantTypeInteger = 3,
  kVariantTypeDouble = 4,
  kVariantTypePointer = 5,
  kVariantTypeArray = 6,
  kVariantTypeMap = 7,
};

class Variant;

// Heterogeneous lookup: a `char const*` or `string_view` key never builds a
// temporary std::string.
using VariantMap = std::map<std::string, Variant, std::less<>>;
using VariantArray = std::vector<Variant>;

// The dynamic value every prop, payload, parameter and record is made of.
//
// Strings, arrays and maps live in reference-counted storage shared between
// copies (copy-on-write), so passing a record around is O(1); the first
// mutating access on a shared value detaches it. Scalars are stored inline.
//
// Reads never throw and never crash: a missing key, a wrong type or an index
// out of range yields the shared null value or the caller's default.
class Variant {
 public:
  using Map = VariantMap;
  using Array = VariantArray;

  static constexpr uint32_t kTypeMask = 0xF;
  static constexpr uint32_t kFlagDouble = 0x10;
  // Set on an integer made from an unsigned value above INT64_MAX, so that it
  // prints, converts and compares as that unsigned number.
  static constexpr uint32_t kFlagUnsigned = 0x20;
  // The deepest nesting of arrays and maps that JSON text may carry: deeper
  // text is refused. Values built in code may nest deeper: they are copied,
  // compared and destroyed at any depth, and print as null below this depth.
  static constexpr int kMaxDepth = 512;

  Variant() noexcept = default;
  explicit Variant(VariantType type);
  Variant(std::nullptr_t) noexcept {}
  Variant(bool value) noexcept;
  Variant(int value) noexcept;
  Variant(unsigned int value) noexcept;
  Variant(long value) noexcept;
  Variant(unsigned long value) noexcept;
  Variant(long long value) noexcept;
  Variant(unsigned long long value) noexcept;
  Variant(double value, bool flag = false) noexcept;
  Variant(char const* value);
  Variant(std::string_view value);
  Variant(std::string const& value);
  Variant(std::string&& value);
  Variant(void* value) noexcept;
  Variant(void const* value) noexcept;
  Variant(Map&& value);
  Variant(Map const& value);
  Variant(Array&& value);
  Variant(Array const& value);

  Variant(Variant const& other) noexcept;
  Variant(Variant&& other) noexcept;
  Variant& operator=(Variant const& other) noexcept;
  Variant& operator=(Variant&& other) noexcept;
  ~Variant();

  // --- type -------------------------------------------------------------
  VariantType type() const noexcept { return static_cast<VariantType>(tag_ & kTypeMask); }
  uint32_t tag() const noexcept { return tag_; }
  bool IsNull() const noexcept { return type() == kVariantTypeNull; }
  bool IsBool() const noexcept { return type() == kVariantTypeBool; }
  bool IsString() const noexcept { return type() == kVariantTypeString; }
  bool IsInteger() const noexcept { return type() == kVariantTypeInteger; }
  bool IsDouble() const noexcept { return type() == kVariantTypeDouble; }
  bool IsNumber() const noexcept { return IsInteger() || IsDouble(); }
  bool IsPointer() const noexcept { return type() == kVariantTypePointer; }
  bool IsArray() const noexcept { return type() == kVariantTypeArray; }
  bool IsMap() const noexcept { return type() == kVariantTypeMap; }

  // --- scalar access --------------------------------------------------------
  // Numbers convert between integer, double and bool; a string is never parsed.
  // A pointer reads as its address through the unsigned accessors, and an
  // unsigned 64-bit integer reads back as a pointer, because hosts carry
  // pointers both ways (for example `view_context`).
  bool AsBoolean() const noexcept;
  int64_t AsInteger() const noexcept;
  int32_t AsInt32() const noexcept;
  uint32_t AsUint32() const noexcept;
  uint64_t AsUint64() const noexcept;
  double AsDouble() const noexcept;
  void* AsPtr() const noexcept;
  // The empty string for every non-string value.
  std::string const& AsStr() const noexcept;
  char const* AsCStr() const noexcept;

  // --- containers -----------------------------------------------------------
  // The const forms yield a shared empty container for other types; the
  // non-const forms turn a null value into an empty container first and detach
  // shared storage. On any other type they yield a scratch container whose
  // changes are dropped.
  //
  // On a temporary they yield the container by value, so that
  // `for (auto& x : Parse(text).AsArray())` never walks a dead value.
  Array const& AsArray() const& noexcept;
  Array& AsArray() &;
  Array AsArray() &&;
  Map const& AsMap() const& noexcept;
  Map& AsMap() &;
  Map AsMap() &&;

  // Number of members of a map or array, length of a string, 0 otherwise.
  size_t Size() const noexcept;
  bool Empty() const noexcept { return Size() == 0; }

  // --- map ----------------------------------------------------------------
  bool Has(std::string_view key) const noexcept;
  // The member, or the shared null value when absent (or when not a map).
  Variant const& Get(std::string_view key) const noexcept;
  // The member for writing, or a scratch value whose changes are dropped
  // when absent. Use operator[] to create.
  Variant& Get(std::string_view key);
  // Creates the member when absent; a null value becomes a map first.
  Variant& operator[](char const* key);
  Variant& operator[](std::string_view key);
  Variant& operator[](std::string const& key) { return (*this)[std::string_view(key)]; }
  Variant const& operator[](char const* key) const noexcept { return Get(key); }
  Variant const& operator[](std::string_view key) const noexcept { return Get(key); }
  // A null value becomes a map; returns false (and changes nothing) on other types.
  bool Set(std::string_view key, Variant const& value);
  bool Set(std::string_view key, Variant&& value);
  bool Remove(std::string_view key);

  // Typed reads by key. Without a default they yield false, 0 or "".
  bool GetBoolean(std::string_view key, bool def = false) const noexcept;
  int32_t GetInt32(std::string_view key, int32_t def = 0) const noexcept;
  int64_t GetInteger(std::string_view key, int64_t def = 0) const noexcept;
  uint32_t GetUint32(std::string_view key, uint32_t def = 0) const noexcept;
  uint64_t GetUint64(std::string_view key, uint64_t def = 0) const noexcept;
  double GetDouble(std::string_view key, double def = 0.0) const noexcept;
  char const* GetCStr(std::string_view key, char const* def = "") const noexcept;
  std::string GetString(std::string_view key, std::string_view def = {}) const;

  // --- array --------------------------------------------------------------
  // A null value becomes an array; returns false on other types.
  bool Add(Variant const& value);
  bool Add(Variant&& value);
  bool AddFront(Variant const& value);
  bool AddFront(Variant&& value);
  Variant const& operator[](int index) const noexcept;
  Variant& operator[](int index);

  // --- common -------------------------------------------------------------
  void Reset() noexcept;
  bool operator==(Variant const& other) const noexcept;
  bool operator!=(Variant const& other) const noexcept { return !(*this == other); }

  // A string yields itself, numbers and booleans their text, null "",
  // containers their compact JSON.
  std::string ToString() const;
  // Compact JSON text of the value (pointers as their address); what nests
  // deeper than kMaxDepth prints as null.
  std::string ToJson() const;
  // Replaces this value with the JSON value; returns false for an invalid one
  // or one nested deeper than kMaxDepth, leaving this value unchanged.
  bool FromJson(json::JsonValue const& value);
  // Parses `length` bytes of JSON text (or up to the NUL when length is -1).
  // On malformed text, or text nested deeper than kMaxDepth, the value is
  // left unchanged and false is returned.
  bool FromJsonStr(char const* text, std::ptrdiff_t length = -1);

  // True when the two share container storage (a copy not yet written to).
  bool SharesStorageWith(Variant const& other) const noexcept;

  static Variant const& EmptyValue() noexcept;

 private:
  struct Shared;
  template <typename T>
  struct Box;
  using StringBox = Box<std::string>;
  using ArrayBox = Box<Array>;
  using MapBox = Box<Map>;

  bool HoldsShared() const noexcept {
    const auto t = type();
    return t == kVariantTypeString || t == kVariantTypeArray || t == kVariantTypeMap;
  }
  void Release() noexcept;
  // Frees a container box whose last reference is gone, and through it every
  // container only it held, without recursing deeper than a fixed bound.
  static void FreeContainer(uint32_t type, Shared* box) noexcept;
  // Equality that recurses a fixed number of levels and walks deeper values
  // with a list of its own.
  static bool Equal(Variant const& a, Variant const& b, int depth) noexcept;
  static bool EqualDeep(Variant const& a, Variant const& b) noexcept;
  void Retain() const noexcept;
  void Detach();
  Map* MutableMap();
  Array* MutableArray();

  uint32_t tag_ = kVariantTypeNull;
  union {
    bool b_;
    int64_t i_ = 0;
    double d_;
    void* p_;
    Shared* shared_;
  };
};

}  // namespace variant
}  // namespace base

// Every layer speaks in Variant; the short name is available everywhere.
using Variant = base::variant::Variant;

namespace framework {

// A shared, immutable null value.
Variant const& GetEmptyVariant() noexcept;
// Printable form for logs; null prints "null".
std::string VariantToString(Variant const* value);
// As above, with the named keys left out of maps at any depth. When
// `mask` is true the keys stay but their values print as "***".
std::string VariantToStringWithout(Variant const* value, std::vector<std::string> const& keys,
                                   bool mask = false);
}  // namespace framework
