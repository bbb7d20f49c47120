// Colour maps as tables of 256 colours at equal steps.
#pragma once

#include <QRgb>

#include <array>
#include <cstddef>

namespace tarnis {

/// The colours of 256 equal steps, from the lower limit of a scale to its upper one. All are opaque.
using ColourTable = std::array<QRgb, 256>;

/// The tables of the library. They have static storage duration.
enum class TableName { Viridis, Cividis, Magma, Inferno, Turbo, Greys, Diverging };
constexpr std::size_t tableCount = 7;

const ColourTable& colorTable(TableName name);

} // namespace tarnis
