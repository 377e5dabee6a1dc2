// Writing JSON values one event at a time: to canonical text as it goes (so that a large project
// never exists twice in memory), or to a value tree for the parts still handled as trees.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <json/json.h>

namespace aehost {

// The receiver of a JSON value written piece by piece. Object members come as Key then value;
// the text writer relies on its callers to give them in sorted order.
class JsonOut {
 public:
  virtual ~JsonOut() = default;
  virtual void BeginObject() = 0;
  virtual void EndObject() = 0;
  // An array of objects, arrays or texts; plain numbers go through Numbers.
  virtual void BeginArray() = 0;
  virtual void EndArray() = 0;
  virtual void Key(std::string_view name) = 0;
  virtual void Number(double value) = 0;
  virtual void Integer(std::int64_t value) = 0;
  virtual void Bool(bool value) = 0;
  virtual void Text(std::string_view text) = 0;
  virtual void Numbers(std::span<const double> values) = 0;
  virtual void Tree(const Json::Value& value) = 0;
};

// The canonical layout: two-space indentation, arrays of plain numbers on one line, numbers in
// the shortest form that reads back to the same double. Text is handed to `flush` in pieces of
// about a megabyte; without one it is kept whole for Take. A number that is not finite throws
// std::domain_error naming its place ("comps[0].layers[2].transform.position[1]").
class JsonTextWriter final : public JsonOut {
 public:
  explicit JsonTextWriter(std::function<void(std::string_view)> flush = nullptr);
  void BeginObject() override;
  void EndObject() override;
  void BeginArray() override;
  void EndArray() override;
  void Key(std::string_view name) override;
  void Number(double value) override;
  void Integer(std::int64_t value) override;
  void Bool(bool value) override;
  void Text(std::string_view text) override;
  void Numbers(std::span<const double> values) override;
  void Tree(const Json::Value& value) override;
  // Ends the text with a newline and hands over what is left.
  void Finish();
  std::string Take() { return std::move(text_); }

 private:
  struct Level {
    bool array;
    std::size_t count;
    std::string_view key;
  };
  void StartValue();
  void Open(char bracket, bool array);
  void Close(char bracket);
  void AppendNumber(double value, std::size_t element);
  void AppendTreeScalar(const Json::Value& value, std::size_t element);
  std::string Place(std::size_t element) const;
  void FlushIfLarge();

  std::function<void(std::string_view)> flush_;
  std::string text_;
  std::vector<Level> levels_;
};

// Builds the value tree the same events describe.
class JsonValueBuilder final : public JsonOut {
 public:
  void BeginObject() override;
  void EndObject() override;
  void BeginArray() override;
  void EndArray() override;
  void Key(std::string_view name) override;
  void Number(double value) override;
  void Integer(std::int64_t value) override;
  void Bool(bool value) override;
  void Text(std::string_view text) override;
  void Numbers(std::span<const double> values) override;
  void Tree(const Json::Value& value) override;
  Json::Value Take() { return std::move(root_); }

 private:
  Json::Value& Slot();

  Json::Value root_;
  std::vector<Json::Value*> open_;
  std::string key_;
};

// The tree of what `write` writes, for the parts of the description built as trees.
template <typename Write>
Json::Value BuildTree(Write&& write) {
  JsonValueBuilder builder;
  write(builder);
  return builder.Take();
}

// A member written by a function rather than held in a tree.
struct WrittenMember {
  std::string_view name;
  std::function<void(JsonOut&)> write;
};

// Writes one object made of the members of `plain` and of `written`, in sorted order.
void WriteObject(JsonOut& out, const Json::Value& plain, std::vector<WrittenMember> written);

}  // namespace aehost
