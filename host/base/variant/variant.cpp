#include "base/variant/variant.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include <nlohmann/json.hpp>

#include "base/json/json_value.h"
#include "base/log/log.h"

namespace base {
namespace variant {

// Shared storage of strings, arrays and maps. The count starts at one for the
// Variant that allocates the box.
struct Variant::Shared {
  std::atomic<uint32_t> refs{1};
};

template <typename T>
struct Variant::Box : Variant::Shared {
  template <typename... Args>
  explicit Box(Args&&... args) : value(std::forward<Args>(args)...) {}
  T value;
};

namespace {

// Set on integers built from an unsigned value above INT64_MAX, so that they
// print and compare as the unsigned number they are.
constexpr uint32_t kFlagUnsigned = Variant::kFlagUnsigned;

// Constant-initialised; never holds storage, so its destruction at exit is harmless.
const Variant kNullValue{};

std::string const& EmptyString() {
  static const std::string* empty = new std::string();
  return *empty;
}

VariantMap const& EmptyMap() {
  static const VariantMap* empty = new VariantMap();
  return *empty;
}

VariantArray const& EmptyArray() {
  static const VariantArray* empty = new VariantArray();
  return *empty;
}

// Targets for writes that have nowhere to go (a missing key, a wrong type);
// each use starts from an empty value, so nothing written there is ever read back.
Variant& ScratchValue() {
  thread_local Variant scratch;
  scratch.Reset();
  return scratch;
}

VariantMap& ScratchMap() {
  thread_local VariantMap scratch;
  scratch.clear();
  return scratch;
}

VariantArray& ScratchArray() {
  thread_local VariantArray scratch;
  scratch.clear();
  return scratch;
}

int64_t DoubleToInt64(double d) noexcept {
  if (std::isnan(d)) return 0;
  if (d >= 9223372036854775808.0) return std::numeric_limits<int64_t>::max();
  if (d < -9223372036854775808.0) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(d);
}

// How many levels freeing and comparing recurse before they go on with a
// list of their own: deep enough that everyday values never need the list,
// shallow enough that any thread's stack holds it.
constexpr int kRecursionLimit = 64;

// The depth of the current thread's freeing, and the list of boxes its
// outermost call frees once the recursion has unwound.
struct FreeState {
  int depth = 0;
  std::vector<std::pair<uint32_t, void*>>* deferred = nullptr;
};
thread_local FreeState t_free;

uint64_t DoubleToUint64(double d) noexcept {
  if (std::isnan(d) || d <= 0.0) return 0;
  if (d >= 18446744073709551616.0) return std::numeric_limits<uint64_t>::max();
  return static_cast<uint64_t>(d);
}

}  // namespace

// --- construction -------------------------------------------------------------

Variant::Variant(VariantType type) {
  switch (type) {
    case kVariantTypeBool:
      i_ = 0;
      b_ = false;
      break;
    case kVariantTypeString:
      shared_ = new StringBox();
      break;
    case kVariantTypeInteger:
      i_ = 0;
      break;
    case kVariantTypeDouble:
      d_ = 0.0;
      break;
    case kVariantTypePointer:
      p_ = nullptr;
      break;
    case kVariantTypeArray:
      shared_ = new ArrayBox();
      break;
    case kVariantTypeMap:
      shared_ = new MapBox();
      break;
    default:
      return;  // null, or a number that names no type
  }
  tag_ = type;
}

Variant::Variant(bool value) noexcept : tag_(kVariantTypeBool) { b_ = value; }
Variant::Variant(int value) noexcept : tag_(kVariantTypeInteger) { i_ = value; }
Variant::Variant(unsigned int value) noexcept : tag_(kVariantTypeInteger) { i_ = value; }
Variant::Variant(long value) noexcept : tag_(kVariantTypeInteger) { i_ = value; }
Variant::Variant(long long value) noexcept : tag_(kVariantTypeInteger) { i_ = value; }

Variant::Variant(unsigned long value) noexcept
    : tag_(kVariantTypeInteger |
           (value > static_cast<unsigned long>(std::numeric_limits<int64_t>::max()) ? kFlagUnsigned : 0)) {
  i_ = static_cast<int64_t>(value);
}

Variant::Variant(unsigned long long value) noexcept
    : tag_(kVariantTypeInteger |
           (value > static_cast<unsigned long long>(std::numeric_limits<int64_t>::max()) ? kFlagUnsigned : 0)) {
  i_ = static_cast<int64_t>(value);
}

Variant::Variant(double value, bool flag) noexcept : tag_(kVariantTypeDouble | (flag ? kFlagDouble : 0)) {
  d_ = value;
}

Variant::Variant(char const* value) : tag_(kVariantTypeString) {
  shared_ = value ? new StringBox(value) : new StringBox();
}
Variant::Variant(std::string_view value) : tag_(kVariantTypeString) { shared_ = new StringBox(value); }
Variant::Variant(std::string const& value) : tag_(kVariantTypeString) { shared_ = new StringBox(value); }
Variant::Variant(std::string&& value) : tag_(kVariantTypeString) { shared_ = new StringBox(std::move(value)); }
Variant::Variant(void* value) noexcept : tag_(kVariantTypePointer) { p_ = value; }
Variant::Variant(void const* value) noexcept : tag_(kVariantTypePointer) { p_ = const_cast<void*>(value); }
Variant::Variant(Map&& value) : tag_(kVariantTypeMap) { shared_ = new MapBox(std::move(value)); }
Variant::Variant(Map const& value) : tag_(kVariantTypeMap) { shared_ = new MapBox(value); }
Variant::Variant(Array&& value) : tag_(kVariantTypeArray) { shared_ = new ArrayBox(std::move(value)); }
Variant::Variant(Array const& value) : tag_(kVariantTypeArray) { shared_ = new ArrayBox(value); }

// The payload is copied as raw bytes: whatever member is active, the eight
// bytes carry it, and no inactive member is ever read.
Variant::Variant(Variant const& other) noexcept : tag_(other.tag_) {
  std::memcpy(static_cast<void*>(&i_), &other.i_, sizeof(i_));
  Retain();
}

Variant::Variant(Variant&& other) noexcept : tag_(other.tag_) {
  std::memcpy(static_cast<void*>(&i_), &other.i_, sizeof(i_));
  other.tag_ = kVariantTypeNull;
  other.i_ = 0;
}

Variant& Variant::operator=(Variant const& other) noexcept {
  if (this == &other) return *this;
  // `other` may live inside this value's own storage (v = v["child"]): take
  // its payload and a reference before letting go of ours.
  Variant copy(other);
  return *this = std::move(copy);
}

Variant& Variant::operator=(Variant&& other) noexcept {
  if (this == &other) return *this;
  const uint32_t tag = other.tag_;
  int64_t bits;
  std::memcpy(&bits, &other.i_, sizeof(bits));
  other.tag_ = kVariantTypeNull;
  other.i_ = 0;
  Release();
  tag_ = tag;
  std::memcpy(static_cast<void*>(&i_), &bits, sizeof(bits));
  return *this;
}

Variant::~Variant() { Release(); }

void Variant::Retain() const noexcept {
  if (HoldsShared()) shared_->refs.fetch_add(1, std::memory_order_relaxed);
}

void Variant::Release() noexcept {
  if (!HoldsShared()) return;
  Shared* shared = shared_;
  // The sole owner needs no atomic write: nobody else can see the box.
  if (shared->refs.load(std::memory_order_acquire) != 1 &&
      shared->refs.fetch_sub(1, std::memory_order_acq_rel) != 1) {
    return;
  }
  if (type() == kVariantTypeString) {
    delete static_cast<StringBox*>(shared);
    return;
  }
  FreeContainer(type(), shared);
}

void Variant::FreeContainer(uint32_t type, Shared* box) noexcept {
  FreeState& state = t_free;
  if (state.depth >= kRecursionLimit && state.deferred) {
    state.deferred->emplace_back(type, box);
    return;
  }
  const auto free_box = [&state](uint32_t t, Shared* b) {
    ++state.depth;
    if (t == kVariantTypeArray) {
      delete static_cast<ArrayBox*>(b);
    } else {
      delete static_cast<MapBox*>(b);
    }
    --state.depth;
  };
  if (state.depth > 0) {
    free_box(type, box);
    return;
  }
  // The outermost call: what lies deeper than the limit waits on this list,
  // and is freed here, each box from the top again.
  std::vector<std::pair<uint32_t, void*>> deferred;
  state.deferred = &deferred;
  free_box(type, box);
  while (!deferred.empty()) {
    const auto next = deferred.back();
    deferred.pop_back();
    free_box(next.first, static_cast<Shared*>(next.second));
  }
  state.deferred = nullptr;
}

void Variant::Detach() {
  if (!HoldsShared() || shared_->refs.load(std::memory_order_acquire) == 1) return;
  Shared* copy = nullptr;
  switch (type()) {
    case kVariantTypeString:
      copy = new StringBox(static_cast<StringBox*>(shared_)->value);
      break;
    case kVariantTypeArray:
      copy = new ArrayBox(static_cast<ArrayBox*>(shared_)->value);
      break;
    case kVariantTypeMap:
      copy = new MapBox(static_cast<MapBox*>(shared_)->value);
      break;
    default:
      return;
  }
  Release();
  shared_ = copy;
}

Variant::Map* Variant::MutableMap() {
  Detach();
  return &static_cast<MapBox*>(shared_)->value;
}

Variant::Array* Variant::MutableArray() {
  Detach();
  return &static_cast<ArrayBox*>(shared_)->value;
}

// --- scalars --------------------------------------------------------------------

bool Variant::AsBoolean() const noexcept {
  switch (type()) {
    case kVariantTypeBool:
      return b_;
    case kVariantTypeInteger:
      return i_ != 0;
    case kVariantTypeDouble:
      return d_ != 0.0;
    case kVariantTypePointer:
      return p_ != nullptr;
    default:
      return false;
  }
}

int64_t Variant::AsInteger() const noexcept {
  switch (type()) {
    case kVariantTypeInteger:
      return i_;
    case kVariantTypeDouble:
      return DoubleToInt64(d_);
    case kVariantTypeBool:
      return b_ ? 1 : 0;
    case kVariantTypePointer:
      return static_cast<int64_t>(reinterpret_cast<uintptr_t>(p_));
    default:
      return 0;
  }
}

int32_t Variant::AsInt32() const noexcept { return static_cast<int32_t>(AsInteger()); }

uint32_t Variant::AsUint32() const noexcept { return static_cast<uint32_t>(AsUint64()); }

uint64_t Variant::AsUint64() const noexcept {
  switch (type()) {
    case kVariantTypeInteger:
      return static_cast<uint64_t>(i_);
    case kVariantTypeDouble:
      return DoubleToUint64(d_);
    case kVariantTypeBool:
      return b_ ? 1 : 0;
    case kVariantTypePointer:
      return static_cast<uint64_t>(reinterpret_cast<uintptr_t>(p_));
    default:
      return 0;
  }
}

double Variant::AsDouble() const noexcept {
  switch (type()) {
    case kVariantTypeDouble:
      return d_;
    case kVariantTypeInteger:
      return (tag_ & kFlagUnsigned) ? static_cast<double>(static_cast<uint64_t>(i_)) : static_cast<double>(i_);
    case kVariantTypeBool:
      return b_ ? 1.0 : 0.0;
    default:
      return 0.0;
  }
}

void* Variant::AsPtr() const noexcept {
  switch (type()) {
    case kVariantTypePointer:
      return p_;
    case kVariantTypeInteger:
      return reinterpret_cast<void*>(static_cast<uintptr_t>(i_));
    default:
      return nullptr;
  }
}

std::string const& Variant::AsStr() const noexcept {
  return IsString() ? static_cast<StringBox*>(shared_)->value : EmptyString();
}

char const* Variant::AsCStr() const noexcept { return AsStr().c_str(); }

// --- containers -------------------------------------------------------------------

Variant::Array const& Variant::AsArray() const& noexcept {
  return IsArray() ? static_cast<ArrayBox*>(shared_)->value : EmptyArray();
}

Variant::Array& Variant::AsArray() & {
  if (IsNull()) *this = Variant(kVariantTypeArray);
  return IsArray() ? *MutableArray() : ScratchArray();
}

Variant::Array Variant::AsArray() && {
  if (!IsArray()) return {};
  return std::move(*MutableArray());
}

Variant::Map const& Variant::AsMap() const& noexcept {
  return IsMap() ? static_cast<MapBox*>(shared_)->value : EmptyMap();
}

Variant::Map& Variant::AsMap() & {
  if (IsNull()) *this = Variant(kVariantTypeMap);
  return IsMap() ? *MutableMap() : ScratchMap();
}

Variant::Map Variant::AsMap() && {
  if (!IsMap()) return {};
  return std::move(*MutableMap());
}

size_t Variant::Size() const noexcept {
  switch (type()) {
    case kVariantTypeString:
      return static_cast<StringBox*>(shared_)->value.size();
    case kVariantTypeArray:
      return static_cast<ArrayBox*>(shared_)->value.size();
    case kVariantTypeMap:
      return static_cast<MapBox*>(shared_)->value.size();
    default:
      return 0;
  }
}

// --- map ------------------------------------------------------------------------------

bool Variant::Has(std::string_view key) const noexcept {
  if (!IsMap()) return false;
  auto const& map = static_cast<MapBox*>(shared_)->value;
  return map.find(key) != map.end();
}

Variant const& Variant::Get(std::string_view key) const noexcept {
  if (!IsMap()) return kNullValue;
  auto const& map = static_cast<MapBox*>(shared_)->value;
  auto it = map.find(key);
  return it == map.end() ? kNullValue : it->second;
}

Variant& Variant::Get(std::string_view key) {
  // Look before detaching: a miss must not copy shared storage.
  if (!Has(key)) return ScratchValue();
  Map* map = MutableMap();
  return map->find(key)->second;
}

Variant& Variant::operator[](char const* key) { return (*this)[std::string_view(key ? key : "")]; }

Variant& Variant::operator[](std::string_view key) {
  if (IsNull()) *this = Variant(kVariantTypeMap);
  if (!IsMap()) return ScratchValue();
  Map* map = MutableMap();
  auto it = map->lower_bound(key);
  if (it == map->end() || it->first != key) it = map->emplace_hint(it, std::string(key), Variant());
  return it->second;
}

bool Variant::Set(std::string_view key, Variant const& value) { return Set(key, Variant(value)); }

bool Variant::Set(std::string_view key, Variant&& value) {
  if (IsNull()) *this = Variant(kVariantTypeMap);
  if (!IsMap()) return false;
  Map* map = MutableMap();
  auto it = map->lower_bound(key);
  if (it == map->end() || it->first != key) {
    map->emplace_hint(it, std::string(key), std::move(value));
  } else {
    it->second = std::move(value);
  }
  return true;
}

bool Variant::Remove(std::string_view key) {
  if (!Has(key)) return false;
  Map* map = MutableMap();
  map->erase(map->find(key));
  return true;
}

bool Variant::GetBoolean(std::string_view key, bool def) const noexcept {
  Variant const& v = Get(key);
  switch (v.type()) {
    case kVariantTypeBool:
    case kVariantTypeInteger:
    case kVariantTypeDouble:
      return v.AsBoolean();
    default:
      return def;
  }
}

namespace {
// The kinds a typed integer read converts; strings, containers and null
// yield the caller's default.
bool ReadsAsNumber(Variant const& v) noexcept {
  switch (v.type()) {
    case kVariantTypeBool:
    case kVariantTypeInteger:
    case kVariantTypeDouble:
    case kVariantTypePointer:
      return true;
    default:
      return false;
  }
}
}  // namespace

int64_t Variant::GetInteger(std::string_view key, int64_t def) const noexcept {
  Variant const& v = Get(key);
  return ReadsAsNumber(v) ? v.AsInteger() : def;
}

int32_t Variant::GetInt32(std::string_view key, int32_t def) const noexcept {
  Variant const& v = Get(key);
  return ReadsAsNumber(v) ? v.AsInt32() : def;
}

uint32_t Variant::GetUint32(std::string_view key, uint32_t def) const noexcept {
  Variant const& v = Get(key);
  return ReadsAsNumber(v) ? v.AsUint32() : def;
}

uint64_t Variant::GetUint64(std::string_view key, uint64_t def) const noexcept {
  Variant const& v = Get(key);
  return ReadsAsNumber(v) ? v.AsUint64() : def;
}

double Variant::GetDouble(std::string_view key, double def) const noexcept {
  Variant const& v = Get(key);
  switch (v.type()) {
    case kVariantTypeBool:
    case kVariantTypeInteger:
    case kVariantTypeDouble:
      return v.AsDouble();
    default:
      return def;
  }
}

char const* Variant::GetCStr(std::string_view key, char const* def) const noexcept {
  Variant const& v = Get(key);
  return v.IsString() ? v.AsCStr() : def;
}

std::string Variant::GetString(std::string_view key, std::string_view def) const {
  Variant const& v = Get(key);
  return v.IsString() ? v.AsStr() : std::string(def);
}

// --- array ----------------------------------------------------------------------------

bool Variant::Add(Variant const& value) { return Add(Variant(value)); }

bool Variant::Add(Variant&& value) {
  if (IsNull()) *this = Variant(kVariantTypeArray);
  if (!IsArray()) return false;
  MutableArray()->push_back(std::move(value));
  return true;
}

bool Variant::AddFront(Variant const& value) { return AddFront(Variant(value)); }

bool Variant::AddFront(Variant&& value) {
  if (IsNull()) *this = Variant(kVariantTypeArray);
  if (!IsArray()) return false;
  Array* array = MutableArray();
  array->insert(array->begin(), std::move(value));
  return true;
}

Variant const& Variant::operator[](int index) const noexcept {
  if (!IsArray() || index < 0) return kNullValue;
  auto const& array = static_cast<ArrayBox*>(shared_)->value;
  return static_cast<size_t>(index) < array.size() ? array[static_cast<size_t>(index)] : kNullValue;
}

Variant& Variant::operator[](int index) {
  if (!IsArray() || index < 0 || static_cast<size_t>(index) >= Size()) return ScratchValue();
  return (*MutableArray())[static_cast<size_t>(index)];
}

// --- common ---------------------------------------------------------------------------

void Variant::Reset() noexcept {
  Release();
  tag_ = kVariantTypeNull;
  i_ = 0;
}

bool Variant::operator==(Variant const& other) const noexcept { return Equal(*this, other, 0); }

bool Variant::Equal(Variant const& a, Variant const& b, int depth) noexcept {
  if (a.type() != b.type()) return false;
  switch (a.type()) {
    case kVariantTypeNull:
      return true;
    case kVariantTypeBool:
      return a.b_ == b.b_;
    case kVariantTypeInteger:
      return a.i_ == b.i_ && (a.tag_ & kFlagUnsigned) == (b.tag_ & kFlagUnsigned);
    case kVariantTypeDouble:
      return a.d_ == b.d_;
    case kVariantTypePointer:
      return a.p_ == b.p_;
    case kVariantTypeString:
      return a.shared_ == b.shared_ || a.AsStr() == b.AsStr();
    case kVariantTypeArray: {
      if (a.shared_ == b.shared_) return true;
      Array const& x = a.AsArray();
      Array const& y = b.AsArray();
      if (x.size() != y.size()) return false;
      if (depth >= kRecursionLimit) return EqualDeep(a, b);
      for (size_t i = 0; i < x.size(); ++i) {
        if (!Equal(x[i], y[i], depth + 1)) return false;
      }
      return true;
    }
    case kVariantTypeMap: {
      if (a.shared_ == b.shared_) return true;
      Map const& x = a.AsMap();
      Map const& y = b.AsMap();
      if (x.size() != y.size()) return false;
      if (depth >= kRecursionLimit) return EqualDeep(a, b);
      for (auto i = x.begin(), j = y.begin(); i != x.end(); ++i, ++j) {
        if (i->first != j->first || !Equal(i->second, j->second, depth + 1)) return false;
      }
      return true;
    }
    default:
      return false;
  }
}

bool Variant::EqualDeep(Variant const& a, Variant const& b) noexcept {
  std::vector<std::pair<Variant const*, Variant const*>> pending{{&a, &b}};
  while (!pending.empty()) {
    const auto [x, y] = pending.back();
    pending.pop_back();
    if (x->type() != y->type()) return false;
    if (!x->IsArray() && !x->IsMap()) {
      if (!Equal(*x, *y, 0)) return false;
      continue;
    }
    if (x->shared_ == y->shared_) continue;
    if (x->Size() != y->Size()) return false;
    if (x->IsArray()) {
      Array const& xs = x->AsArray();
      Array const& ys = y->AsArray();
      for (size_t i = 0; i < xs.size(); ++i) pending.emplace_back(&xs[i], &ys[i]);
      continue;
    }
    Map const& xs = x->AsMap();
    for (auto i = xs.begin(), j = y->AsMap().begin(); i != xs.end(); ++i, ++j) {
      if (i->first != j->first) return false;
      pending.emplace_back(&i->second, &j->second);
    }
  }
  return true;
}

bool Variant::SharesStorageWith(Variant const& other) const noexcept {
  return HoldsShared() && other.HoldsShared() && shared_ == other.shared_;
}

Variant const& Variant::EmptyValue() noexcept { return kNullValue; }

// --- JSON -----------------------------------------------------------------------------

namespace {

using Json = nlohmann::json;

// Keys to leave out (or mask) while converting; empty for a plain conversion.
struct KeyFilter {
  std::vector<std::string> const* keys = nullptr;
  bool mask = false;
  bool Matches(std::string const& key) const {
    return keys && std::find(keys->begin(), keys->end(), key) != keys->end();
  }
};

// What nests deeper than Variant::kMaxDepth prints as null: the JSON
// library's writer recurses once a level.
Json ToJsonValue(Variant const& v, KeyFilter const& filter, int depth = 0) {
  switch (v.type()) {
    case kVariantTypeBool:
      return v.AsBoolean();
    case kVariantTypeInteger:
      if (v.tag() & Variant::kFlagUnsigned) return v.AsUint64();
      return v.AsInteger();
    case kVariantTypeDouble:
      return v.AsDouble();
    case kVariantTypePointer:
      return v.AsUint64();
    case kVariantTypeString:
      return v.AsStr();
    case kVariantTypeArray: {
      if (depth >= Variant::kMaxDepth) return nullptr;
      Json out = Json::array();
      for (auto const& item : v.AsArray()) out.push_back(ToJsonValue(item, filter, depth + 1));
      return out;
    }
    case kVariantTypeMap: {
      if (depth >= Variant::kMaxDepth) return nullptr;
      Json out = Json::object();
      for (auto const& [key, item] : v.AsMap()) {
        if (filter.Matches(key)) {
          if (filter.mask) out[key] = "***";
          continue;
        }
        out[key] = ToJsonValue(item, filter, depth + 1);
      }
      return out;
    }
    default:
      return nullptr;
  }
}

std::string Dump(Json const& json) {
  // Invalid UTF-8 in a string must not throw out of a log statement.
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// The value of a JSON document; `too_deep` is set, and null returned, for a
// document nested deeper than Variant::kMaxDepth.
Variant FromJsonValue(Json const& json, bool* too_deep, int depth = 0) {
  switch (json.type()) {
    case Json::value_t::boolean:
      return Variant(json.get<bool>());
    case Json::value_t::number_integer:
      return Variant(json.get<int64_t>());
    case Json::value_t::number_unsigned:
      return Variant(json.get<uint64_t>());
    case Json::value_t::number_float:
      return Variant(json.get<double>());
    case Json::value_t::string:
      return Variant(json.get_ref<std::string const&>());
    case Json::value_t::array: {
      if (depth >= Variant::kMaxDepth) *too_deep = true;
      if (*too_deep) return Variant();
      Variant::Array out;
      out.reserve(json.size());
      for (auto const& item : json) out.push_back(FromJsonValue(item, too_deep, depth + 1));
      return Variant(std::move(out));
    }
    case Json::value_t::object: {
      if (depth >= Variant::kMaxDepth) *too_deep = true;
      if (*too_deep) return Variant();
      Variant::Map out;
      for (auto it = json.begin(); it != json.end(); ++it) {
        out.emplace(it.key(), FromJsonValue(it.value(), too_deep, depth + 1));
      }
      return Variant(std::move(out));
    }
    default:
      return Variant();
  }
}

// Builds a Variant straight from the parser's events, without an
// intermediate JSON document.
class VariantSaxBuilder {
 public:
  using Number = Json::number_integer_t;
  using Unsigned = Json::number_unsigned_t;
  using Float = Json::number_float_t;
  using String = Json::string_t;
  using Binary = Json::binary_t;

  explicit VariantSaxBuilder(Variant* root) : root_(root) {}

  bool null() { return Put(Variant()); }
  bool boolean(bool value) { return Put(Variant(value)); }
  bool number_integer(Number value) { return Put(Variant(static_cast<long long>(value))); }
  bool number_unsigned(Unsigned value) { return Put(Variant(static_cast<unsigned long long>(value))); }
  bool number_float(Float value, String const&) { return Put(Variant(value)); }
  bool string(String& value) { return Put(Variant(std::move(value))); }
  bool binary(Binary&) { return false; }

  bool start_object(std::size_t) {
    if (!MayOpen()) return false;
    Variant* map = Place(Variant(kVariantTypeMap));
    stack_.push_back(map);
    return true;
  }
  bool key(String& key) {
    key_ = std::move(key);
    return true;
  }
  bool end_object() {
    stack_.pop_back();
    return true;
  }
  bool start_array(std::size_t) {
    if (!MayOpen()) return false;
    Variant* array = Place(Variant(kVariantTypeArray));
    stack_.push_back(array);
    return true;
  }
  bool end_array() {
    stack_.pop_back();
    return true;
  }
  bool parse_error(std::size_t, std::string const&, nlohmann::detail::exception const&) { return false; }

  bool too_deep() const { return too_deep_; }

 private:
  bool MayOpen() {
    if (stack_.size() < static_cast<size_t>(Variant::kMaxDepth)) return true;
    too_deep_ = true;
    return false;
  }

  bool Put(Variant&& value) {
    Place(std::move(value));
    return true;
  }

  // Stores a value where the parser is; containers get pointers that stay valid
  // while they are open, because only the innermost container ever grows.
  Variant* Place(Variant&& value) {
    if (stack_.empty()) {
      *root_ = std::move(value);
      return root_;
    }
    Variant* top = stack_.back();
    if (top->IsArray()) {
      auto& array = top->AsArray();
      array.push_back(std::move(value));
      return &array.back();
    }
    auto& map = top->AsMap();
    auto it = map.lower_bound(key_);
    if (it == map.end() || it->first != key_) {
      it = map.emplace_hint(it, std::move(key_), std::move(value));
    } else {
      it->second = std::move(value);  // a repeated key: the last one wins
    }
    return &it->second;
  }

  Variant* root_;
  std::vector<Variant*> stack_;
  std::string key_;
  bool too_deep_ = false;
};

}  // namespace

std::string Variant::ToString() const {
  switch (type()) {
    case kVariantTypeNull:
      return std::string();
    case kVariantTypeString:
      return AsStr();
    case kVariantTypeBool:
      return b_ ? "true" : "false";
    case kVariantTypeInteger:
      return (tag_ & kFlagUnsigned) ? std::to_string(AsUint64()) : std::to_string(i_);
    case kVariantTypeDouble:
      if (std::isnan(d_)) return "nan";
      if (std::isinf(d_)) return d_ > 0 ? "inf" : "-inf";
      return Dump(Json(d_));
    default:
      return ToJson();
  }
}

std::string Variant::ToJson() const { return Dump(ToJsonValue(*this, KeyFilter())); }

bool Variant::FromJson(json::JsonValue const& value) {
  if (value.raw().is_discarded()) return false;
  bool too_deep = false;
  Variant result = FromJsonValue(value.raw(), &too_deep);
  if (too_deep) {
    TXLOG_WARN << "[variant] JSON nested deeper than " << kMaxDepth << " levels refused";
    return false;
  }
  *this = std::move(result);
  return true;
}

bool Variant::FromJsonStr(char const* text, std::ptrdiff_t length) {
  if (!text) return false;
  const size_t size = length < 0 ? std::strlen(text) : static_cast<size_t>(length);
  Variant result;
  VariantSaxBuilder builder(&result);
  bool ok = false;
  try {
    ok = Json::sax_parse(text, text + size, &builder);
  } catch (std::exception const&) {
    ok = false;
  }
  if (builder.too_deep()) {
    TXLOG_WARN << "[variant] JSON nested deeper than " << kMaxDepth << " levels refused";
    return false;
  }
  if (!ok) return false;
  *this = std::move(result);
  return true;
}

}  // namespace variant
}  // namespace base

namespace framework {

Variant const& GetEmptyVariant() noexcept { return Variant::EmptyValue(); }

std::string VariantToString(Variant const* value) {
  return VariantToStringWithout(value, {}, false);
}

std::string VariantToStringWithout(Variant const* value, std::vector<std::string> const& keys, bool mask) {
  if (!value || value->IsNull()) return "null";
  if (!value->IsMap() && !value->IsArray()) return value->ToString();
  base::variant::KeyFilter filter;
  filter.keys = keys.empty() ? nullptr : &keys;
  filter.mask = mask;
  return base::variant::Dump(base::variant::ToJsonValue(*value, filter));
}

}  // namespace framework
