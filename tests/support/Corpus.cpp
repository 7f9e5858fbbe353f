#include "Corpus.h"

#include "TempDir.h"

#include <algorithm>
#include <cstdlib>
#include <system_error>

namespace kelvane::testing {

namespace fs = std::filesystem;

fs::path corpusDir() {
    if (const char* dir = std::getenv("KELVANE_CORPUS_DIR")) {
        return dir;
    }
    for (const fs::path& candidate :
         {sourceDir() / ".." / "shared" / "corpus", fs::path("/work/shared/corpus")}) {
        std::error_code error;
        if (fs::is_directory(candidate, error)) {
            return candidate;
        }
    }
    return {};
}

std::vector<std::string> projectLocations(const fs::path& corpus) {
    std::vector<std::string> locations;
    std::error_code error;
    for (fs::recursive_directory_iterator
             it(corpus, fs::directory_options::skip_permission_denied, error),
         end;
         !error && it != end; it.increment(error)) {
        const std::string extension = it->path().extension().string();
        if ((extension == ".xcodeproj" || extension == ".xcworkspace") && it->is_directory(error)) {
            locations.push_back(it->path().string());
        }
    }
    std::sort(locations.begin(), locations.end());
    return locations;
}

} // namespace kelvane::testing
