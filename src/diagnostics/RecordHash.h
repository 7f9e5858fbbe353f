#pragma once

#include <cstddef>

namespace kelvane {

// Every diagnostic record hashes through one overloaded `hashValue`; this
// adapter lets the records key the standard unordered containers too
// (`std::hash<Record>` derives from it).
template <class Record> struct RecordHash {
    [[nodiscard]] std::size_t operator()(const Record& record) const noexcept {
        return hashValue(record);
    }
};

} // namespace kelvane
