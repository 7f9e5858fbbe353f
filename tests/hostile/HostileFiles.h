#pragma once

#include "TempDir.h"

#include <cstddef>
#include <string>
#include <string_view>

// Bytes and project layouts that a project cloned from anywhere may hold.
namespace kelvane::testing::hostile {

// Writes `App.xcodeproj/project.pbxproj` with `bytes`; returns the bundle path.
std::string writeProject(const TempDir& dir, std::string_view bytes);

// A well-formed project with an app ("App", entitlements App/App.entitlements)
// and a Watch app ("Watch", Watch/Info.plist), the two kinds of file the
// checks read. Writes both files with the given bytes; returns the bundle path.
std::string writeProjectReading(const TempDir& dir, std::string_view entitlements,
                                std::string_view watchInfoPlist);

inline constexpr std::string_view kEntitlementsFile = "App/App.entitlements";
inline constexpr std::string_view kWatchInfoPlistFile = "Watch/Info.plist";

// Well-formed contents for the two files.
std::string goodEntitlements();
std::string goodWatchInfoPlist();

// An old-style project file whose `objects` holds `depth` nested arrays,
// closed or not.
std::string nestedArrays(std::size_t depth, bool closed);

// A project file with one quoted string of `size` bytes, closed or not.
std::string hugeQuotedString(std::size_t size, bool closed);

// Targets whose references lead to missing objects, to themselves and to
// objects of the wrong kind.
std::string danglingAndSelfReferences();

// Binary property lists.
std::string binaryOffsetPastEnd();
std::string binaryCycle();
// 187 bytes whose one string is reached 2^24 times through 24 levels of
// two-element arrays.
std::string binaryExpansion();
std::string binaryCountPastEnd();

// XML property lists.
std::string xmlUnclosed();
std::string xmlWithByteOrderMark();
std::string xmlBillionLaughs();
std::string xmlIntegerNotANumber();
std::string xmlKeyWithoutValue();

} // namespace kelvane::testing::hostile
