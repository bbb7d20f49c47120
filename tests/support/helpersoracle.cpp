#include "support/helpersoracle.h"

#include <cctype>
#include <climits>
#include <cmath>
#include <cstdio>

namespace tarnis::testing::oracle {

namespace {

std::string trimmedAscii(std::string text)
{
    const auto isSpace = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
    while (!text.empty() && isSpace(text.back()))
        text.pop_back();
    while (!text.empty() && isSpace(text.front()))
        text.erase(text.begin());
    return text;
}

std::string formatted(double value, char format, int precision)
{
    const char conversion[] = { '%', '.', '*', format, '\0' };
    char buffer[512];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    const int length = std::snprintf(buffer, sizeof buffer, conversion, precision, value);
#pragma GCC diagnostic pop
    return std::string(buffer, static_cast<std::size_t>(length));
}

bool digitsAt(const std::string& text, std::size_t from, std::size_t count)
{
    for (std::size_t i = from; i < from + count; ++i) {
        if (i >= text.size() || text[i] < '0' || text[i] > '9')
            return false;
    }
    return true;
}

} // namespace

std::vector<std::string> split(const std::string& text, const std::string& separator, int maxParts)
{
    std::vector<std::string> parts;
    std::string rest = trimmedAscii(text);
    if (maxParts == 0 || maxParts >= 2) {
        int count = maxParts == 0 ? INT_MAX : maxParts;
        while (true) {
            const std::size_t index = rest.find(separator);
            if (index == std::string::npos || index < 1)
                break;
            parts.push_back(rest.substr(0, index));
            rest = rest.substr(index + 1);
            if (--count == 1)
                break;
        }
    }
    parts.push_back(rest);
    return parts;
}

std::string engineeringNumber(double value, int precision)
{
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value > 0 ? "inf" : "-inf";
    int exponent = 0;
    while (std::fabs(value) >= 1000.0) {
        value = value / 1000.0;
        exponent = exponent + 3;
    }
    if (value != 0) {
        while (std::fabs(value) < 1.0) {
            value = value * 1000.0;
            exponent = exponent - 3;
            if (value == 0)
                break;
        }
    }
    const std::string mantissa = std::ceil(value) == std::floor(value) ? std::to_string(static_cast<int>(value))
                                                                       : formatted(value, 'g', precision);
    if (exponent == 0)
        return mantissa;
    return mantissa + "e" + (exponent > 0 ? "+" : "") + std::to_string(exponent);
}

std::string numStr(double value, char format, int precision)
{
    std::string text = format == 'n' ? engineeringNumber(value, precision) : formatted(value, format, precision);
    if (text.find_first_of("eE") != std::string::npos)
        return text;
    if (text.find('.') == std::string::npos)
        return text;
    while (text.back() == '0')
        text.pop_back();
    if (text.back() == '.')
        text.pop_back();
    return text;
}

RunDir runDirInfo(const std::string& name)
{
    // From the end: eight digits, an underscore, six digits; at least one character of prefix before them.
    if (name.size() < 16)
        return {};
    const std::size_t date = name.size() - 8;
    const std::size_t run = date - 7;
    if (!digitsAt(name, date, 8) || name[date - 1] != '_' || !digitsAt(name, run, 6) || name.find('\n') < run)
        return {};
    return { true, name.substr(0, run), std::stoi(name.substr(run, 6)), std::stoi(name.substr(date, 4)),
        std::stoi(name.substr(date + 4, 2)), std::stoi(name.substr(date + 6, 2)) };
}

Rect withCenter(Rect rect, int x, int y)
{
    const int width = rect.right - rect.left + 1;
    const int height = rect.bottom - rect.top + 1;
    const int left = x - width / 2;
    const int top = y - height / 2;
    return { left, top, left + width - 1, top + height - 1 };
}

Rect stretched(Rect rect, double xFactor, double yFactor)
{
    const int w = rect.right - rect.left + 1;
    const int h = rect.bottom - rect.top + 1;
    const int newWidth = static_cast<int>(std::round(w * xFactor));
    const int newHeight = static_cast<int>(std::round(h * yFactor));
    const int left = rect.left + w / 2 - newWidth / 2;
    const int top = rect.top + h / 2 - newHeight / 2;
    return { left, top, left + newWidth - 1, top + newHeight - 1 };
}

Rect movedIn(Rect rect, Rect bounds)
{
    const auto moveBy = [&rect](int dx, int dy) {
        rect = { rect.left + dx, rect.top + dy, rect.right + dx, rect.bottom + dy };
    };
    if (rect.right > bounds.right)
        moveBy(bounds.right - rect.right, 0);
    if (rect.bottom > bounds.bottom)
        moveBy(0, bounds.bottom - rect.bottom);
    if (rect.left < bounds.left)
        moveBy(bounds.left - rect.left, 0);
    if (rect.top < bounds.top)
        moveBy(0, bounds.top - rect.top);
    return rect;
}

std::vector<std::string> settingLines(const std::vector<std::pair<std::string, std::string>>& sortedPairs)
{
    std::vector<std::string> lines;
    std::string line = "setting ";
    int inLine = 0;
    for (const auto& [key, value] : sortedPairs) {
        line += key + ":" + value;
        ++inLine;
        if (inLine == 5) {
            lines.push_back(line);
            line = "setting ";
            inLine = 0;
        } else {
            line += " ";
        }
    }
    if (inLine > 0)
        lines.push_back(line);
    return lines;
}

} // namespace tarnis::testing::oracle
