// The bridge to libtarnis-hdf5, which is loaded when the first HDF5 file is read or written. Other programs neither
// link nor load the HDF5 library.
#pragma once

#include <tarnis/formats/formats.h>

namespace tarnis {

/// The two functions that a format library exports, under the names below.
struct FormatModule {
    void (*encode)(const Dataset& data, EncodeResult& result) = nullptr;
    void (*decode)(QByteArrayView bytes, DatasetResult& result) = nullptr;
    QString error; ///< why the functions are missing
};

inline constexpr char encodeSymbol[] = "tarnis_hdf5_encode";
inline constexpr char decodeSymbol[] = "tarnis_hdf5_decode";

/// Loads the library from the folder of this one, else from the system's library path. The library is never unloaded.
FormatModule loadHdf5Module();

} // namespace tarnis
