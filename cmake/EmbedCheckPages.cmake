# Writes the check pages (docs/checks/ID.md) into a C++ source as string
# constants, so `kelvane explain` and the window's Help need no files at run
# time.
#   cmake -DOUTPUT=CheckPagesData.cpp -DPAGES="a.md|b.md" -P EmbedCheckPages.cmake
string(REPLACE "|" ";" PAGES "${PAGES}")
set(delimiter "kelvane_page")
set(body "")
foreach(page IN LISTS PAGES)
    get_filename_component(id "${page}" NAME_WLE)
    file(READ "${page}" text)
    string(FIND "${text}" ")${delimiter}\"" clash)
    if(NOT clash EQUAL -1)
        message(FATAL_ERROR "${page} holds the raw-string delimiter )${delimiter}\"")
    endif()
    string(APPEND body "    CheckPage{\"${id}\", R\"${delimiter}(${text})${delimiter}\"},\n")
endforeach()
list(LENGTH PAGES count)
set(source "// Generated from docs/checks by cmake/EmbedCheckPages.cmake; do not edit.
#include \"report/CheckPages.h\"

#include <array>

namespace kelvane::report {

namespace {
constexpr std::array<CheckPage, ${count}> kPages{
${body}};
} // namespace

std::span<const CheckPage> checkPages() noexcept {
    return kPages;
}

} // namespace kelvane::report
")
# Rewritten only when the text changes, so an unrelated build compiles nothing.
file(WRITE "${OUTPUT}.new" "${source}")
file(COPY_FILE "${OUTPUT}.new" "${OUTPUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${OUTPUT}.new")
