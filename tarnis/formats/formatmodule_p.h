// The bridge to libtarnis-hdf5, which is loaded when the first HDF5 file is read or written: a program that needs none
// neither links nor loads the HDF5 library.
#pragma once

#include <tarnis/formats/formats.h>

namespace tarnis {

/// The two functions that the library of a format exports, under the names below.
struct FormatModule {
    void (*encode)(const Dataset& data, EncodeResult& result) = nullptr;
    void (*decode)(QByteArrayView bytes, DatasetResult& result) = nullptr;
    QString error; ///< why there are none
};

inline constexpr char encodeSymbol[] = "tarnis_hdf5_encode";
inline constexpr char decodeSymbol[] = "tarnis_hdf5_decode";

/// Loads the library from the folder of this one, or else from where the system looks for libraries. It stays loaded.
FormatModule loadHdf5Module();

} // namespace tarnis
