// generate-project OUTPUT.xcodeproj MEGABYTES
// Writes a large, realistic project for benchmarks and manual tests.
#include "ProjectGenerator.h"

#include <charconv>
#include <cstring>
#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    double megabytes = 0;
    if (argc == 3) {
        const char* text = argv[2];
        const auto [end, error] = std::from_chars(text, text + std::strlen(text), megabytes);
        if (error != std::errc() || *end != '\0' || megabytes <= 0) {
            megabytes = 0;
        }
    }
    if (megabytes <= 0) {
        std::cerr << "usage: generate-project OUTPUT.xcodeproj MEGABYTES\n";
        return 2;
    }
    try {
        kelvane::bench::writeProject(argv[1], static_cast<std::size_t>(megabytes * 1e6));
    } catch (const std::exception& error) {
        std::cerr << "generate-project: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
