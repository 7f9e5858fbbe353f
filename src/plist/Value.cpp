#include "plist/Value.h"

#include <functional>

namespace kelvane::plist {

namespace {
// Below this size a linear scan over the entries beats hashing.
constexpr std::size_t kIndexThreshold = 16;
} // namespace

Dictionary::Dictionary() = default;
Dictionary::Dictionary(const Dictionary&) = default;
Dictionary::Dictionary(Dictionary&&) noexcept = default;
Dictionary& Dictionary::operator=(const Dictionary&) = default;
Dictionary& Dictionary::operator=(Dictionary&&) noexcept = default;
Dictionary::~Dictionary() = default;

std::size_t Dictionary::size() const noexcept { return entries_.size(); }
bool Dictionary::empty() const noexcept { return entries_.empty(); }
const std::vector<DictionaryEntry>& Dictionary::entries() const noexcept { return entries_; }
std::vector<DictionaryEntry>::const_iterator Dictionary::begin() const noexcept {
    return entries_.begin();
}
std::vector<DictionaryEntry>::const_iterator Dictionary::end() const noexcept {
    return entries_.end();
}

void Dictionary::reserve(std::size_t count) { entries_.reserve(count); }

std::size_t Dictionary::slotFor(std::string_view key) const noexcept {
    const std::size_t mask = index_.size() - 1;
    std::size_t slot = std::hash<std::string_view>{}(key)&mask;
    while (index_[slot] != 0 && entries_[index_[slot] - 1].key != key) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

const Value* Dictionary::find(std::string_view key) const noexcept {
    if (index_.empty()) {
        for (const auto& entry : entries_) {
            if (entry.key == key) {
                return &entry.value;
            }
        }
        return nullptr;
    }
    const std::uint32_t position = index_[slotFor(key)];
    return position == 0 ? nullptr : &entries_[position - 1].value;
}

void Dictionary::rebuildIndex() {
    std::size_t capacity = 64;
    while (capacity < entries_.size() * 2) {
        capacity *= 2;
    }
    index_.assign(capacity, 0);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        index_[slotFor(entries_[i].key)] = static_cast<std::uint32_t>(i + 1);
    }
}

void Dictionary::insert(std::string key, Value value) {
    if (index_.empty()) {
        for (auto& entry : entries_) {
            if (entry.key == key) {
                entry.value = std::move(value);
                return;
            }
        }
        entries_.push_back({std::move(key), std::move(value)});
        if (entries_.size() >= kIndexThreshold) {
            rebuildIndex();
        }
        return;
    }
    const std::size_t slot = slotFor(key);
    if (index_[slot] != 0) {
        entries_[index_[slot] - 1].value = std::move(value);
        return;
    }
    entries_.push_back({std::move(key), std::move(value)});
    if (entries_.size() * 2 > index_.size()) {
        rebuildIndex();
    } else {
        index_[slot] = static_cast<std::uint32_t>(entries_.size());
    }
}

bool operator==(const Dictionary& a, const Dictionary& b) { return a.entries_ == b.entries_; }

bool operator==(const Value& a, const Value& b) { return a.storage_ == b.storage_; }

const std::string* findString(const Dictionary& dictionary, std::string_view key) {
    const Value* value = dictionary.find(key);
    return value ? value->asString() : nullptr;
}

const Dictionary* findDictionary(const Dictionary& dictionary, std::string_view key) {
    const Value* value = dictionary.find(key);
    return value ? value->asDictionary() : nullptr;
}

const Array* findArray(const Dictionary& dictionary, std::string_view key) {
    const Value* value = dictionary.find(key);
    return value ? value->asArray() : nullptr;
}

} // namespace kelvane::plist
