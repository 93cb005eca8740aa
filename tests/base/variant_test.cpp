#include "base/variant/variant.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "base/json/json_value.h"

using namespace base::variant;

namespace base::variant {
// Failure messages show the value as JSON.
void PrintTo(Variant const& value, std::ostream* os) { *os << value.ToJson(); }
}  // namespace base::variant

namespace {

Variant MessageRecord() {
  Variant block(Variant::Map{{"type", 2}, {"text", "hello"}});
  return Variant(Variant::Map{{"msg_id", "m-1"},
                              {"message_time", 1700000000123LL},
                              {"is_self", true},
                              {"score", 2.5},
                              {"count_text", "42"},
                              {"msg_content", Variant::Array{block}}});
}

}  // namespace

TEST(VariantConstruction, EveryConstructorGivesItsType) {
  int local = 0;
  const std::pair<Variant, uint32_t> cases[] = {
      {Variant(), kVariantTypeNull},          {Variant(nullptr), kVariantTypeNull},
      {Variant(true), kVariantTypeBool},      {Variant("text"), kVariantTypeString},
      {Variant(std::string("s")), kVariantTypeString}, {Variant(std::string_view("sv")), kVariantTypeString},
      {Variant(static_cast<char const*>(nullptr)), kVariantTypeString},
      {Variant(7), kVariantTypeInteger},      {Variant(7u), kVariantTypeInteger},
      {Variant(7L), kVariantTypeInteger},     {Variant(7UL), kVariantTypeInteger},
      {Variant(7LL), kVariantTypeInteger},    {Variant(7ULL), kVariantTypeInteger},
      {Variant(0.5), kVariantTypeDouble},     {Variant(static_cast<void*>(&local)), kVariantTypePointer},
      {Variant(static_cast<void const*>(&local)), kVariantTypePointer},
      {Variant(Variant::Array{1, 2}), kVariantTypeArray}, {Variant(Variant::Map{{"k", 1}}), kVariantTypeMap},
  };
  for (auto const& [value, type] : cases) EXPECT_EQ(value.type(), type) << value.ToJson();
  EXPECT_EQ(Variant(static_cast<char const*>(nullptr)).AsStr(), "");

  for (uint32_t t = kVariantTypeNull; t <= kVariantTypeMap; ++t) {
    Variant empty{static_cast<VariantType>(t)};
    EXPECT_EQ(empty.type(), t);
    EXPECT_TRUE(empty.Empty());
    EXPECT_EQ(empty.AsInteger(), 0);
  }
  EXPECT_TRUE(Variant(static_cast<VariantType>(12)).IsNull());
}

TEST(VariantReads, TypedReadsFallBackOnMissingKeysAndWrongTypes) {
  const Variant record = MessageRecord();
  EXPECT_EQ(record.GetInteger("message_time"), 1700000000123LL);
  EXPECT_STREQ(record.GetCStr("msg_id"), "m-1");

  EXPECT_EQ(record.GetInteger("absent"), 0);
  EXPECT_EQ(record.GetInteger("absent", -1), -1);
  EXPECT_TRUE(record.GetBoolean("absent", true));
  EXPECT_STREQ(record.GetCStr("absent"), "");
  EXPECT_STREQ(record.GetCStr("absent", "dflt"), "dflt");
  EXPECT_EQ(record.GetString("absent", "dflt"), "dflt");
  EXPECT_DOUBLE_EQ(record.GetDouble("absent", 1.5), 1.5);

  // Strings are never parsed as numbers; non-strings never read as strings.
  EXPECT_EQ(record.GetInteger("count_text", -1), -1);
  EXPECT_EQ(record.GetInt32("count_text"), 0);
  EXPECT_STREQ(record.GetCStr("message_time", "dflt"), "dflt");
  EXPECT_EQ(record.GetString("msg_content", "dflt"), "dflt");
  EXPECT_EQ(record.Get("message_time").AsStr(), "");
  EXPECT_EQ(record.GetInteger("msg_content", 9), 9);

  // Numbers convert among themselves and to bool, clamped at the limits.
  EXPECT_EQ(record.GetInteger("score"), 2);
  EXPECT_DOUBLE_EQ(record.GetDouble("message_time"), 1700000000123.0);
  EXPECT_EQ(record.GetInteger("is_self"), 1);
  EXPECT_TRUE(record.GetBoolean("score"));
  EXPECT_EQ(Variant(-3.99).AsInteger(), -3);
  EXPECT_EQ(Variant(1e300).AsInteger(), std::numeric_limits<int64_t>::max());
  EXPECT_EQ(Variant(-1.0).AsUint64(), 0u);

  // Reads through values that are not maps or arrays, or out of range.
  const Variant number(5);
  EXPECT_TRUE(number.Get("x").IsNull());
  EXPECT_FALSE(number.Has("x"));
  EXPECT_TRUE(number[0].IsNull());
  EXPECT_TRUE(number.AsMap().empty());
  EXPECT_TRUE(record["msg_content"][5].IsNull());
  EXPECT_TRUE(record["msg_content"][-1].IsNull());
  EXPECT_EQ(record["msg_content"][0].GetString("text"), "hello");
}

// Hosts carry pointers as unsigned integers and back (e.g. view_context).
TEST(VariantReads, PointersTravelAsUnsignedIntegers) {
  int target = 0;
  const Variant pointer(static_cast<void*>(&target));
  const uint64_t address = pointer.AsUint64();
  EXPECT_EQ(address, reinterpret_cast<uintptr_t>(&target));
  Variant params;
  params["view_context"] = static_cast<unsigned long long>(address);
  params["view_ptr"] = pointer;
  EXPECT_EQ(params.GetUint64("view_ptr"), address);
  EXPECT_EQ(params.Get("view_context").AsPtr(), &target);
  EXPECT_EQ(Variant("text").AsPtr(), nullptr);
}

TEST(VariantContainers, MapOperations) {
  Variant v;
  EXPECT_TRUE(v.Set("a", 1));
  EXPECT_TRUE(v.IsMap());
  v["b"]["c"] = "deep";
  EXPECT_EQ(v.Size(), 2u);
  EXPECT_EQ(v["b"].GetString("c"), "deep");
  EXPECT_TRUE(v.Set(std::string_view("a"), Variant(2)));
  EXPECT_EQ(v.GetInteger("a"), 2);
  EXPECT_TRUE(v.Remove("a"));
  EXPECT_FALSE(v.Remove("a"));
  EXPECT_FALSE(v.Has("a"));

  // Writing through a missing key or into a non-map goes nowhere.
  v.Get("missing") = 5;
  v.Get("missing")["x"] = 1;
  EXPECT_FALSE(v.Has("missing"));
  Variant number(3);
  EXPECT_FALSE(number.Set("k", 1));
  number["k"] = 2;
  number.AsMap()["k"] = 3;
  EXPECT_EQ(number, Variant(3));

  v.Get("b")["c"] = "changed";
  EXPECT_EQ(v["b"].GetString("c"), "changed");

  // A value may be replaced by one of its own members.
  v = v["b"];
  EXPECT_EQ(v.GetString("c"), "changed");
  v = std::move(v["c"]);
  EXPECT_EQ(v.AsStr(), "changed");
}

TEST(VariantContainers, ArrayOperations) {
  Variant list;
  EXPECT_TRUE(list.Add(2));
  EXPECT_TRUE(list.Add(Variant("three")));
  EXPECT_TRUE(list.AddFront(1));
  list[1] = 20;
  EXPECT_EQ(list, Variant(Variant::Array{1, 20, "three"}));

  list[7] = "dropped";
  list[-1] = "dropped";
  EXPECT_EQ(list.Size(), 3u);

  Variant text("abc");
  EXPECT_FALSE(text.Add(1));
  EXPECT_FALSE(text.AddFront(1));
  EXPECT_EQ(text, Variant("abc"));

  Variant grown;
  grown.AsArray().push_back(Variant(1));
  EXPECT_EQ(grown, Variant(Variant::Array{1}));
}

TEST(VariantCopyOnWrite, CopiesShareUntilWritten) {
  const Variant original = MessageRecord();
  Variant copy = original;
  EXPECT_EQ(copy.GetInteger("message_time"), 1700000000123LL);
  EXPECT_EQ(static_cast<Variant const&>(copy)["msg_content"].Size(), 1u);
  EXPECT_TRUE(copy.SharesStorageWith(original)) << "reads do not detach";

  copy["msg_id"] = "m-2";
  EXPECT_FALSE(copy.SharesStorageWith(original));
  EXPECT_EQ(original.GetString("msg_id"), "m-1");
  EXPECT_EQ(copy.GetString("msg_id"), "m-2");

  // Nested containers are shared too and detach on their own.
  Variant nested = original;
  nested["msg_content"][0]["text"] = "edited";
  nested["msg_content"].Add(1);
  Variant list = original["msg_content"];
  list.AsArray().clear();
  Variant removed = original;
  removed.Remove("msg_id");
  EXPECT_EQ(original, MessageRecord());
  EXPECT_EQ(nested["msg_content"][0].GetString("text"), "edited");

  Variant text("shared text");
  EXPECT_TRUE(text.SharesStorageWith(Variant(text)));
  EXPECT_FALSE(Variant(1).SharesStorageWith(Variant(1)));
}

// A container read off a temporary outlives the temporary (under the address
// sanitizer, a reference into the dead value would be caught).
TEST(VariantContainers, ContainersOfTemporariesAreSafeToWalk) {
  auto make = [] {
    Variant a(kVariantTypeArray);
    for (int i = 0; i < 3; ++i) a.Add(std::string(40, static_cast<char>('a' + i)));
    return a;
  };
  std::string joined;
  for (auto const& item : make().AsArray()) joined += item.AsStr().substr(0, 1);
  EXPECT_EQ(joined, "abc");
  Variant shared = make();
  Variant copy = shared;
  size_t count = 0;
  for (auto const& item : std::move(copy).AsArray()) count += item.AsStr().size();
  EXPECT_EQ(count, 120u);
  EXPECT_EQ(shared.Size(), 3u) << "moving out of a shared copy leaves the original whole";
  EXPECT_EQ(Variant(Variant::Map{{"k", 1}}).AsMap().size(), 1u);
  EXPECT_TRUE(Variant(5).AsArray().empty());
}

TEST(VariantCopyOnWrite, CopiesAcrossThreadsKeepTheOriginalIntact) {
  const Variant original = MessageRecord();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&original, t] {
      for (int i = 0; i < 2000; ++i) {
        Variant copy = original;
        if (i % 10 == 0) copy["msg_id"] = t;
        Variant list = copy["msg_content"];
        list.Add(i);
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(original, MessageRecord());
}

TEST(VariantEquality, ComparesByTypeAndValue) {
  Variant changed = MessageRecord();
  changed["msg_content"][0]["text"] = "other";
  EXPECT_NE(changed, MessageRecord());
  EXPECT_EQ(Variant(), Variant(nullptr));
  EXPECT_NE(Variant(1), Variant(1.0));
  EXPECT_NE(Variant(1), Variant(true));
  EXPECT_NE(Variant("1"), Variant(1));
  EXPECT_NE(Variant(std::numeric_limits<uint64_t>::max()), Variant(-1LL));
  EXPECT_EQ(Variant(5ULL), Variant(5));
  EXPECT_NE(Variant(Variant::Array{1, 2}), Variant(Variant::Array{2, 1}));
  EXPECT_NE(Variant(kVariantTypeMap), Variant(kVariantTypeArray));
}

TEST(VariantJson, RoundTripsNestedUnicodeAndNumbers) {
  Variant v = MessageRecord();
  v["nick"] = "李雷 😀 \"quoted\"\n\ttab \\ \x01";
  v["max"] = std::numeric_limits<int64_t>::max();
  v["min"] = std::numeric_limits<int64_t>::min();
  v["umax"] = std::numeric_limits<uint64_t>::max();
  v["tenth"] = 0.1;
  v["huge"] = 1e300;
  v["whole"] = 3.0;
  v["nothing"] = Variant();
  v["empty_list"] = Variant(kVariantTypeArray);
  v["empty_map"] = Variant(kVariantTypeMap);

  const std::string text = v.ToJson();
  EXPECT_NE(text.find("\\u0001"), std::string::npos);
  Variant back;
  ASSERT_TRUE(back.FromJsonStr(text.c_str()));
  EXPECT_EQ(back, v);
  EXPECT_EQ(back.GetUint64("umax"), std::numeric_limits<uint64_t>::max());
  EXPECT_TRUE(back.Get("whole").IsDouble());
  EXPECT_EQ(back.ToJson(), text);

  base::json::JsonValue json;
  ASSERT_TRUE(json.ParseFromJson(text.data(), text.size()));
  Variant from_document;
  ASSERT_TRUE(from_document.FromJson(json));
  EXPECT_EQ(from_document, v);
}

TEST(VariantJson, ParsesEscapesAndKeepsTheLastDuplicateKey) {
  Variant v;
  ASSERT_TRUE(v.FromJsonStr(R"({"a":"\u674e\ud83d\ude00","a2":[1,[2,{"b":null}]],"d":1,"d":2})"));
  EXPECT_EQ(v.GetString("a"), "李😀");
  EXPECT_TRUE(v["a2"][1][1].Has("b") && v["a2"][1][1]["b"].IsNull());
  EXPECT_EQ(v.GetInteger("d"), 2);

  Variant prefix;
  ASSERT_TRUE(prefix.FromJsonStr("[1,2]garbage", 5));
  EXPECT_EQ(prefix.Size(), 2u);
}

TEST(VariantJson, MalformedTextLeavesTheValueUnchanged) {
  const Variant before = MessageRecord();
  for (char const* bad : {"", "{", "{\"a\":}", "[1,2", "{\"a\":1} trailing", "nul", "{'a':1}", "\"\xC3\x28\"",
                          "[1,]", "{\"a\" 1}", static_cast<char const*>(nullptr)}) {
    Variant v = before;
    EXPECT_FALSE(v.FromJsonStr(bad)) << (bad ? bad : "(null)");
    EXPECT_EQ(v, before);
  }
}

TEST(VariantText, ToStringForms) {
  EXPECT_EQ(Variant().ToString(), "");
  EXPECT_EQ(Variant("plain").ToString(), "plain") << "a string is not quoted";
  EXPECT_EQ(Variant(1.5).ToString(), "1.5");
  EXPECT_EQ(Variant(false).ToString(), "false");
  EXPECT_EQ(Variant(std::numeric_limits<uint64_t>::max()).ToString(), "18446744073709551615");
  EXPECT_EQ(Variant(Variant::Map{{"k", "v"}}).ToString(), R"({"k":"v"})");
  // Invalid UTF-8 is replaced, never thrown.
  EXPECT_NO_THROW(Variant(Variant::Array{"\xFF\xFE"}).ToJson());
  EXPECT_EQ(framework::VariantToString(nullptr), "null");
}

TEST(VariantText, ToStringWithoutHidesKeysAtAnyDepth) {
  Variant v;
  v["token"] = "secret-1";
  v["user"]["name"] = "Ann";
  v["user"]["token"] = "secret-2";
  v["members"].Add(Variant(Variant::Map{{"token", "secret-3"}, {"id", 7}}));

  const std::string hidden = framework::VariantToStringWithout(&v, {"token"});
  EXPECT_EQ(hidden.find("token"), std::string::npos) << hidden;
  EXPECT_EQ(hidden.find("secret"), std::string::npos) << hidden;
  EXPECT_NE(hidden.find("Ann"), std::string::npos);
  EXPECT_NE(hidden.find("\"id\":7"), std::string::npos);

  const std::string masked = framework::VariantToStringWithout(&v, {"token"}, true);
  EXPECT_EQ(masked.find("secret"), std::string::npos) << masked;
  EXPECT_NE(masked.find(R"("token":"***")"), std::string::npos) << masked;
  EXPECT_NE(framework::VariantToString(&v).find("secret-3"), std::string::npos);
}

TEST(JsonValue, ParsesBuildsAndPrints) {
  base::json::JsonValue doc;
  const std::string text = "xx{ // note\n \"n\": 5, \"s\": \"t\", /* c */ \"l\": [1, 2] }";
  EXPECT_FALSE(doc.ParseFromJson(text.data(), text.size() - 2, 2, false)) << "comments only when allowed";
  EXPECT_TRUE(doc.IsNull());
  ASSERT_TRUE(doc.ParseFromJson(text.data(), text.size() - 2, 2, true));
  EXPECT_EQ(doc["n"].AsInteger(), 5);
  EXPECT_EQ(doc["s"].AsInteger(-1), -1);
  EXPECT_EQ(doc["l"][1].AsInteger(), 2);
  EXPECT_TRUE(doc["l"][9].IsNull());

  base::json::JsonValue built, list;
  built.SetJsonObject("k", doc["n"]);
  list.AddaJsonObject(doc["s"]);
  built.SetJsonObject("list", list);
  EXPECT_EQ(built.ToCompactString(), R"({"k":5,"list":["t"]})");
  EXPECT_FALSE(built.Has("none"));

  base::json::JsonValue moved = std::move(built);
  EXPECT_TRUE(built.IsNull());
  EXPECT_EQ(moved["k"].AsInteger(), 5);
}

namespace {

std::string NestedArrays(int depth, std::string const& inside = "1") {
  return std::string(depth, '[') + inside + std::string(depth, ']');
}

std::string NestedObjects(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "{\"a\":";
  return text + "0" + std::string(depth, '}');
}

// A value nested `depth` maps deep, built in code as a remote party's payload
// would be after any number of rewrites.
Variant DeepMaps(int depth, int leaf) {
  Variant v(leaf);
  for (int i = 0; i < depth; ++i) v = Variant(Variant::Map{{"a", std::move(v)}});
  return v;
}

}  // namespace

TEST(VariantNesting, JsonDeeperThanTheBoundIsRefusedEverywhere) {
  // At the bound: read, printed and read back the same.
  Variant at_bound;
  ASSERT_TRUE(at_bound.FromJsonStr(NestedArrays(Variant::kMaxDepth).c_str()));
  Variant again;
  ASSERT_TRUE(again.FromJsonStr(at_bound.ToJson().c_str()));
  EXPECT_EQ(again, at_bound);
  EXPECT_EQ(at_bound.ToJson(), NestedArrays(Variant::kMaxDepth));

  // One level more, or a hundred thousand: refused, and the value keeps what it held.
  for (std::string const& text : {NestedArrays(Variant::kMaxDepth + 1), NestedArrays(100000, "\"x\""),
                                  NestedObjects(Variant::kMaxDepth + 1), NestedObjects(100000)}) {
    Variant v("kept");
    EXPECT_FALSE(v.FromJsonStr(text.c_str()));
    EXPECT_EQ(v.AsStr(), "kept");

    base::json::JsonValue doc;
    EXPECT_FALSE(doc.ParseFromJson(text.data(), text.size()));
    EXPECT_TRUE(doc.IsNull());
  }
  base::json::JsonValue doc;
  const std::string objects = NestedObjects(Variant::kMaxDepth);
  ASSERT_TRUE(doc.ParseFromJson(objects.data(), objects.size()));
  Variant from_doc;
  ASSERT_TRUE(from_doc.FromJson(doc));
  EXPECT_EQ(from_doc.ToJson(), objects);

  // A document built deeper in code is refused as a Variant.
  base::json::JsonValue deep;
  for (int i = 0; i <= Variant::kMaxDepth; ++i) {
    base::json::JsonValue outer;
    outer.AddaJsonObject(deep);
    deep = outer;
  }
  Variant v(7);
  EXPECT_FALSE(v.FromJson(deep));
  EXPECT_EQ(v.AsInteger(), 7);
}

TEST(VariantNesting, AValueTwoHundredThousandLevelsDeepIsCopiedComparedPrintedAndFreed) {
  constexpr int kDepth = 200000;
  Variant deep = DeepMaps(kDepth, 1);
  Variant copy = deep;
  EXPECT_TRUE(copy.SharesStorageWith(deep));
  EXPECT_EQ(copy, deep);

  // Equal content in other storage, and a difference at the very bottom.
  const Variant same = DeepMaps(kDepth, 1);
  const Variant other = DeepMaps(kDepth, 2);
  EXPECT_EQ(same, deep);
  EXPECT_NE(other, deep);
  EXPECT_NE(DeepMaps(kDepth - 1, 1), deep);

  // Printing stops at the bound; what lies deeper prints as null.
  const std::string text = deep.ToJson();
  EXPECT_EQ(text.size(), Variant::kMaxDepth * std::string("{\"a\":}").size() + 4);
  EXPECT_NE(text.find("null"), std::string::npos);
  EXPECT_EQ(framework::VariantToString(&deep), text);

  // A write detaches one level; the original stays whole.
  copy["b"] = 2;
  EXPECT_FALSE(copy.SharesStorageWith(deep));
  EXPECT_TRUE(copy.Get("a").SharesStorageWith(deep.Get("a")));
  EXPECT_EQ(deep.Size(), 1u);

  // Freed on this thread and on another.
  copy.Reset();
  deep.Reset();
  EXPECT_TRUE(deep.IsNull());
  std::thread([v = DeepMaps(kDepth, 3)]() mutable { v.Reset(); }).join();
  Variant arrays;
  for (int i = 0; i < kDepth; ++i) arrays = Variant(Variant::Array{std::move(arrays)});
}
