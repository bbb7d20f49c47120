/// @file
/// Arrays of numbers in the NPY format of NumPy, versions 1.0 to 3.0 (NumPy Enhancement Proposal 1). Values only; any
/// thread.
#pragma once

#include <tarnis/formats/dataset.h>

#include <QByteArray>
#include <QByteArrayView>

namespace tarnis {

/// The values as little-endian 64-bit floating point in C order: one dimension for a single curve, else two. The format
/// cannot store axes, units and errors. Returns no bytes for an inconsistent dataset.
TARNIS_EXPORT QByteArray encodeNpy(const Dataset& data);

/// Reads one array of real numbers (b1, i1 to i8, u1 to u8, f2 to f8, and f16 of this machine), in either byte order
/// and in C or Fortran order. An array of at most one dimension is a curve, one of two dimensions a map whose first
/// index is y. Integers beyond 2^53 are rounded to the nearest double.
TARNIS_EXPORT DatasetResult decodeNpy(QByteArrayView bytes);

} // namespace tarnis
