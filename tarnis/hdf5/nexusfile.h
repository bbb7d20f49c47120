/// @file
/// HDF5 files in the NeXus layout NXdata, using the HDF5 C library. Part of the component Tarnis::Hdf5; any thread, one
/// at a time.
#pragma once

#include <tarnis/formats/formats.h>
#include <tarnis/hdf5/hdf5_export.h>

namespace tarnis {

/// The content of a NeXus file with one entry and one NXdata group: `counts`, `counts_errors` if there are errors, the
/// axes `x` and `y` (edges or centres, as in the dataset), names and units, title and source. The time of a dataset is
/// that of its values, which is not NeXus' `start_time`: it is `snapshot_time` in the entry. Values that are missing
/// are NaN. An error if the dataset is inconsistent or the library fails.
TARNIS_HDF5_EXPORT EncodeResult encodeHdf5(const Dataset& data);

/// Reads a NeXus file: the group that the attributes `default` lead to, else the first NXdata group, else a file's only
/// dataset of numbers with one or two dimensions. The time is `snapshot_time`, or else `start_time`. Sizes are checked
/// before memory is used for them. Valid files with unexpected content are errors. The HDF5 library itself can crash on
/// maliciously damaged files: do not read files of unknown origin.
TARNIS_HDF5_EXPORT DatasetResult decodeHdf5(QByteArrayView bytes);

} // namespace tarnis
