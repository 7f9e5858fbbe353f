#include "plist/Value.h"

#include <algorithm>
#include <bit>
#include <functional>

namespace kelvane::plist {

// A project of 50 MB holds about a million values: each byte here costs a
// megabyte there. 32 bytes of payload (a std::string, or a Dictionary's
// entries and index) and a discriminator, with libstdc++ and libc++ alike.
static_assert(sizeof(Dictionary) <= 32 && sizeof(Value) <= 40);

namespace {
// Below this size a linear scan over the entries beats hashing.
constexpr std::size_t kIndexThreshold = 16;

// Keys of one object mostly differ in length or first letter; settle those
// without a call to memcmp.
bool sameKey(const std::string& a, const std::string& b) noexcept {
    return a.size() == b.size() && (a.empty() || (a[0] == b[0] && a == b));
}

// Slots of the index for `count` entries: a power of two, at most half full.
std::size_t indexCapacity(std::size_t count) noexcept {
    return std::max<std::size_t>(64, std::bit_ceil(count * 2));
}
} // namespace

Dictionary::Dictionary() = default;
Dictionary::Dictionary(Dictionary&&) noexcept = default;
Dictionary& Dictionary::operator=(Dictionary&&) noexcept = default;
Dictionary::~Dictionary() = default;

Dictionary::Dictionary(const Dictionary& other) : entries_(other.entries_) {
    if (other.index_) {
        const std::size_t capacity = indexCapacity(entries_.size());
        index_ = std::make_unique<std::uint32_t[]>(capacity);
        std::copy_n(other.index_.get(), capacity, index_.get());
    }
}

Dictionary& Dictionary::operator=(const Dictionary& other) {
    if (this != &other) {
        Dictionary copy(other);
        *this = std::move(copy);
    }
    return *this;
}

Dictionary::Dictionary(std::vector<DictionaryEntry> entries) : entries_(std::move(entries)) {
    if (entries_.size() < kIndexThreshold) {
        removeRepeatedKeys();
        return;
    }
    // One hashing pass builds the index and finds repeated keys; repeats are
    // rare, so only then is the table compacted and indexed again.
    const std::size_t count = entries_.size();
    index_ = std::make_unique<std::uint32_t[]>(indexCapacity(count));
    bool repeats = false;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t slot = slotFor(entries_[i].key);
        if (index_[slot] == 0) {
            index_[slot] = static_cast<std::uint32_t>(i + 1);
        } else {
            repeats = true;
        }
    }
    if (repeats) {
        index_.reset();
        removeRepeatedKeys();
        if (entries_.size() >= kIndexThreshold) {
            rebuildIndex();
        }
    }
}

void Dictionary::removeRepeatedKeys() {
    // Each later occurrence hands its value to the first one and is dropped.
    const std::size_t count = entries_.size();
    std::vector<bool> repeated;
    const auto drop = [&](std::size_t later, std::size_t first) {
        repeated.resize(count);
        repeated[later] = true;
        entries_[first].value = std::move(entries_[later].value);
    };
    if (count < kIndexThreshold) {
        for (std::size_t i = 1; i < count; ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                if (sameKey(entries_[j].key, entries_[i].key) &&
                    (repeated.empty() || !repeated[j])) {
                    drop(i, j);
                    break;
                }
            }
        }
    } else {
        const std::size_t mask = indexCapacity(count) - 1;
        std::vector<std::uint32_t> slots(mask + 1, 0);
        const std::hash<std::string_view> hash;
        for (std::size_t i = 0; i < count; ++i) {
            std::size_t slot = hash(entries_[i].key) & mask;
            while (slots[slot] != 0 && entries_[slots[slot] - 1].key != entries_[i].key) {
                slot = (slot + 1) & mask;
            }
            if (slots[slot] == 0) {
                slots[slot] = static_cast<std::uint32_t>(i + 1);
            } else {
                drop(i, slots[slot] - 1);
            }
        }
    }
    if (repeated.empty()) {
        return;
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (!repeated[i]) {
            if (kept != i) {
                entries_[kept] = std::move(entries_[i]);
            }
            ++kept;
        }
    }
    entries_.resize(kept);
}

std::size_t Dictionary::size() const noexcept {
    return entries_.size();
}
bool Dictionary::empty() const noexcept {
    return entries_.empty();
}
const std::vector<DictionaryEntry>& Dictionary::entries() const noexcept {
    return entries_;
}
std::vector<DictionaryEntry>::const_iterator Dictionary::begin() const noexcept {
    return entries_.begin();
}
std::vector<DictionaryEntry>::const_iterator Dictionary::end() const noexcept {
    return entries_.end();
}

void Dictionary::reserve(std::size_t count) {
    entries_.reserve(count);
}

std::size_t Dictionary::slotFor(std::string_view key) const noexcept {
    const std::size_t mask = indexCapacity(entries_.size()) - 1;
    std::size_t slot = std::hash<std::string_view>{}(key)&mask;
    while (index_[slot] != 0 && entries_[index_[slot] - 1].key != key) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

const Value* Dictionary::find(std::string_view key) const noexcept {
    if (!index_) {
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
    const std::size_t capacity = indexCapacity(entries_.size());
    index_ = std::make_unique<std::uint32_t[]>(capacity);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        index_[slotFor(entries_[i].key)] = static_cast<std::uint32_t>(i + 1);
    }
}

void Dictionary::insert(std::string key, Value value) {
    if (!index_) {
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
    const std::size_t oldCapacity = indexCapacity(entries_.size());
    entries_.push_back({std::move(key), std::move(value)});
    if (indexCapacity(entries_.size()) != oldCapacity) {
        rebuildIndex();
    } else {
        index_[slot] = static_cast<std::uint32_t>(entries_.size());
    }
}

bool operator==(const Dictionary& a, const Dictionary& b) {
    return a.entries_ == b.entries_;
}

bool operator==(const Value& a, const Value& b) {
    return a.storage_ == b.storage_;
}

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
