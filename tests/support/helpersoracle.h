// Reference implementations of the helpers in plain standard C++, for comparison with the library's.
#pragma once

#include <string>
#include <vector>

namespace tarnis::testing::oracle {

struct Rect {
    int left;
    int top;
    int right;
    int bottom;
    bool operator==(const Rect&) const = default;
};

struct RunDir {
    bool matches = false;
    std::string prefix;
    int run = 0;
    int year = 0;
    int month = 0;
    int day = 0;
    bool operator==(const RunDir&) const = default;
};

/// ASCII text only.
std::vector<std::string> split(const std::string& text, const std::string& separator, int maxParts);
/// Formats E, G, e, f, g by snprintf and n by engineeringNumber(). Precision 0 to 17.
std::string numStr(double value, char format, int precision);
std::string engineeringNumber(double value, int precision);
RunDir runDirInfo(const std::string& name);

Rect withCenter(Rect rect, int x, int y);
Rect stretched(Rect rect, double xFactor, double yFactor);
Rect movedIn(Rect rect, Rect bounds);

/// The lines of a download: at most five pairs each.
std::vector<std::string> settingLines(const std::vector<std::pair<std::string, std::string>>& sortedPairs);

} // namespace tarnis::testing::oracle
