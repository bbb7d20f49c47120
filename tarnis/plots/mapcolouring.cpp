#include "tarnis/plots/mapcolouring_p.h"

namespace tarnis {

namespace {

const ColourTable* sharedTable = nullptr;

constexpr std::array<std::array<QRgb, 5>, fivePointsCount> palettes { {
    { 0x000000, 0x0000ff, 0x00ff00, 0xffff00, 0xff0000 },
    { 0xff00ff, 0x0000ff, 0x00ff00, 0xffff00, 0xff0000 },
    { 0x000000, 0x404040, 0x808080, 0xc0c0c0, 0xffffff },
    { 0x0000ff, 0x800080, 0xff0000, 0x808000, 0x00ff00 },
    { 0xff0000, 0xff8080, 0xffffff, 0x8080ff, 0x0000ff },
    { 0x00ffff, 0x40c0ff, 0x8080ff, 0xc040ff, 0xff00ff },
    { 0x000000, 0x800000, 0xff0000, 0xffff00, 0xffffff },
    { 0x000000, 0x000080, 0x0000ff, 0xc0c0ff, 0xffffff },
} };

} // namespace

ScaleColours fivePoints(FivePoints palette)
{
    const std::array<QRgb, 5>& rgb = palettes[static_cast<std::size_t>(palette)];
    return { rgb[0], rgb[1], rgb[2], rgb[3], rgb[4] };
}

void setSharedColourTable(const ColourTable* table)
{
    sharedTable = table;
}

const ColourTable* tableInUse(const MapColouring* colouring)
{
    if (colouring != nullptr && colouring->table != nullptr)
        return colouring->table;
    return colouring != nullptr && colouring->colors ? nullptr : sharedTable;
}

} // namespace tarnis
