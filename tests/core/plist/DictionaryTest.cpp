// Dictionary keeps document order and finds keys at any size.
#include "plist/Value.h"

#include <gtest/gtest.h>

namespace kelvane::plist {
namespace {

std::vector<DictionaryEntry> numbered(int count) {
    std::vector<DictionaryEntry> entries;
    for (int i = 0; i < count; ++i) {
        entries.push_back({"key" + std::to_string(i), Value(std::int64_t{i})});
    }
    return entries;
}

TEST(Dictionary, FindsEveryKeyAcrossTheIndexThreshold) {
    // Sizes around the point where lookups switch from a scan to the index,
    // built both entry by entry and all at once.
    for (const int size : {0, 1, 15, 16, 17, 32, 33, 64, 1000}) {
        SCOPED_TRACE(size);
        Dictionary inserted;
        for (auto& entry : numbered(size)) {
            inserted.insert(entry.key, entry.value);
        }
        const Dictionary bulk(numbered(size));
        EXPECT_EQ(inserted, bulk);
        for (const Dictionary* d : std::initializer_list<const Dictionary*>{&inserted, &bulk}) {
            ASSERT_EQ(d->size(), static_cast<std::size_t>(size));
            for (int i = 0; i < size; ++i) {
                const Value* value = d->find("key" + std::to_string(i));
                ASSERT_NE(value, nullptr) << i;
                EXPECT_EQ(*value->asInteger(), i);
            }
            EXPECT_EQ(d->find("absent"), nullptr);
            EXPECT_EQ(d->find(""), nullptr);
        }
    }
}

TEST(Dictionary, RepeatedKeysKeepFirstPositionAndLastValue) {
    for (const int size : {3, 40}) {
        SCOPED_TRACE(size);
        auto entries = numbered(size);
        entries.push_back({"key1", Value("later")});
        entries.push_back({"key1", Value("last")});
        entries.push_back({"new", Value("tail")});
        const Dictionary d(std::move(entries));
        ASSERT_EQ(d.size(), static_cast<std::size_t>(size + 1));
        EXPECT_EQ(d.entries()[1].key, "key1");
        EXPECT_EQ(*findString(d, "key1"), "last");
        EXPECT_EQ(d.entries().back().key, "new");
        EXPECT_EQ(*findString(d, "new"), "tail");
    }
    Dictionary d;
    d.insert("a", Value("1"));
    d.insert("a", Value("2"));
    EXPECT_EQ(d.size(), 1u);
    EXPECT_EQ(*findString(d, "a"), "2");
}

TEST(Dictionary, CopiesAreIndependentAndStillIndexed) {
    Dictionary original(numbered(100));
    Dictionary copy = original;
    copy.insert("key5", Value("changed"));
    copy.insert("extra", Value("x"));
    EXPECT_EQ(*original.find("key5")->asInteger(), 5);
    EXPECT_EQ(original.find("extra"), nullptr);
    EXPECT_EQ(*findString(copy, "key5"), "changed");
    EXPECT_EQ(*findString(copy, "extra"), "x");
    Dictionary assigned;
    assigned = copy;
    EXPECT_EQ(assigned, copy);
    EXPECT_NE(*findString(assigned, "extra"), "");
}

} // namespace
} // namespace kelvane::plist
