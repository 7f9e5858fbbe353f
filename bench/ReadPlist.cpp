// read-plist [--positions] FILE...
// Reads each file with readPropertyListFile and prints what it holds, or the
// error. Run under `/usr/bin/time -v` to see the peak memory of a read.
// --positions also records where each build setting of a project file
// stands, as a located report asks the reader to.
#include "parser/SettingPositions.h"
#include "plist/ParseError.h"
#include "plist/PropertyListReader.h"

#include <string_view>

#include <chrono>
#include <exception>
#include <iostream>

namespace {
// Values in the tree, the root included.
std::size_t countValues(const kelvane::plist::Value& value) {
    std::size_t count = 1;
    if (const auto* array = value.asArray()) {
        for (const auto& element : *array) {
            count += countValues(element);
        }
    } else if (const auto* dictionary = value.asDictionary()) {
        for (const auto& entry : *dictionary) {
            count += countValues(entry.value);
        }
    }
    return count;
}
} // namespace

int main(int argc, char** argv) {
    int status = 0;
    const bool positions = argc > 1 && std::string_view(argv[1]) == "--positions";
    for (int i = positions ? 2 : 1; i < argc; ++i) {
        try {
            kelvane::plist::KeyPositions keys = kelvane::buildSettingPositions();
            const auto start = std::chrono::steady_clock::now();
            const kelvane::plist::Value value =
                kelvane::plist::readPropertyListFile(argv[i], {}, positions ? &keys : nullptr);
            const std::chrono::duration<double, std::milli> took =
                std::chrono::steady_clock::now() - start;
            std::cout << argv[i] << ": " << countValues(value) << " values";
            if (positions) {
                std::cout << ", " << keys.size() << " positions";
            }
            std::cout << ", read in " << took.count() << " ms\n";
        } catch (const std::exception& error) {
            std::cerr << error.what() << '\n';
            status = 1;
        }
    }
    return status;
}
