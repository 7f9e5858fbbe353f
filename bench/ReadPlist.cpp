// read-plist FILE...
// Reads each file with readPropertyListFile and prints what it holds, or the
// error. Run under `/usr/bin/time -v` to see the peak memory of a read.
#include "plist/ParseError.h"
#include "plist/PropertyListReader.h"

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
    for (int i = 1; i < argc; ++i) {
        try {
            const auto start = std::chrono::steady_clock::now();
            const kelvane::plist::Value value = kelvane::plist::readPropertyListFile(argv[i]);
            const std::chrono::duration<double, std::milli> took =
                std::chrono::steady_clock::now() - start;
            std::cout << argv[i] << ": " << countValues(value) << " values, read in "
                      << took.count() << " ms\n";
        } catch (const std::exception& error) {
            std::cerr << error.what() << '\n';
            status = 1;
        }
    }
    return status;
}
