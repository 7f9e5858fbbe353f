#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kelvane::plist {

class Value;
class Dictionary;

using Array = std::vector<Value>;
using Data = std::vector<std::uint8_t>;

// A point in time, as seconds since 2001-01-01T00:00:00Z (the reference date
// of every property-list form).
struct Date {
    double secondsSince2001 = 0;
    friend bool operator==(const Date&, const Date&) = default;
};

// One dictionary entry. Keys are always text: no property-list form that
// Kelvane reads produces anything else in a position that matters.
struct DictionaryEntry;

// A dictionary that keeps document order and answers lookups in constant
// time however many entries it holds (a project's object table has 100,000s).
class Dictionary {
public:
    Dictionary();
    Dictionary(const Dictionary&);
    Dictionary(Dictionary&&) noexcept;
    Dictionary& operator=(const Dictionary&);
    Dictionary& operator=(Dictionary&&) noexcept;
    ~Dictionary();

    // Takes entries in document order, as the readers collect them; a
    // repeated key keeps its first position and takes the last value.
    explicit Dictionary(std::vector<DictionaryEntry> entries);

    [[nodiscard]] std::size_t size() const noexcept;
    [[nodiscard]] bool empty() const noexcept;

    // Entries in document order.
    [[nodiscard]] const std::vector<DictionaryEntry>& entries() const noexcept;
    [[nodiscard]] std::vector<DictionaryEntry>::const_iterator begin() const noexcept;
    [[nodiscard]] std::vector<DictionaryEntry>::const_iterator end() const noexcept;

    // nullptr when the key is missing.
    [[nodiscard]] const Value* find(std::string_view key) const noexcept;

    // A repeated key keeps its first position and takes the new value.
    void insert(std::string key, Value value);
    void reserve(std::size_t count);

    friend bool operator==(const Dictionary& a, const Dictionary& b);

private:
    void rebuildIndex();
    void removeRepeatedKeys();
    [[nodiscard]] std::size_t slotFor(std::string_view key) const noexcept;

    std::vector<DictionaryEntry> entries_;
    // Open-addressing table of entry positions + 1 (0 = empty slot); only built
    // once the dictionary is large enough for a linear scan to cost more. Its
    // capacity follows from the entry count, so a plain pointer is enough and
    // a Dictionary stays as small as a std::string: a project's values are
    // mostly short texts, and every byte of Value counts millions of times.
    std::unique_ptr<std::uint32_t[]> index_;
};

// A property-list value: text, integer, real, boolean, date, data, array or
// dictionary. A plain value type: copies are independent.
class Value {
public:
    enum class Kind { string, integer, real, boolean, date, data, array, dictionary };

    Value() : storage_(std::string()) {}
    Value(std::string text) : storage_(std::move(text)) {}
    Value(const char* text) : storage_(std::string(text)) {}
    Value(std::int64_t integer) : storage_(integer) {}
    Value(double real) : storage_(real) {}
    Value(bool boolean) : storage_(boolean) {}
    Value(Date date) : storage_(date) {}
    Value(Data data) : storage_(std::move(data)) {}
    Value(Array array) : storage_(std::move(array)) {}
    Value(Dictionary dictionary) : storage_(std::move(dictionary)) {}

    [[nodiscard]] Kind kind() const noexcept { return static_cast<Kind>(storage_.index()); }

    // Each returns nullptr when the value is of another kind.
    [[nodiscard]] const std::string* asString() const noexcept {
        return std::get_if<std::string>(&storage_);
    }
    [[nodiscard]] const std::int64_t* asInteger() const noexcept {
        return std::get_if<std::int64_t>(&storage_);
    }
    [[nodiscard]] const double* asReal() const noexcept { return std::get_if<double>(&storage_); }
    [[nodiscard]] const bool* asBoolean() const noexcept { return std::get_if<bool>(&storage_); }
    [[nodiscard]] const Date* asDate() const noexcept { return std::get_if<Date>(&storage_); }
    [[nodiscard]] const Data* asData() const noexcept { return std::get_if<Data>(&storage_); }
    [[nodiscard]] const Array* asArray() const noexcept { return std::get_if<Array>(&storage_); }
    [[nodiscard]] const Dictionary* asDictionary() const noexcept {
        return std::get_if<Dictionary>(&storage_);
    }

    friend bool operator==(const Value& a, const Value& b);

private:
    // The order of alternatives is Kind's.
    std::variant<std::string, std::int64_t, double, bool, Date, Data, Array, Dictionary> storage_;
};

struct DictionaryEntry {
    std::string key;
    Value value;
    friend bool operator==(const DictionaryEntry&, const DictionaryEntry&) = default;
};

// Convenience readers used by every consumer of project data: a missing key
// and a value of another kind both give nullptr.
[[nodiscard]] const std::string* findString(const Dictionary& dictionary, std::string_view key);
[[nodiscard]] const Dictionary* findDictionary(const Dictionary& dictionary, std::string_view key);
[[nodiscard]] const Array* findArray(const Dictionary& dictionary, std::string_view key);

} // namespace kelvane::plist
