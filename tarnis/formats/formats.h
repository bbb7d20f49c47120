/// @file
/// Reads and writes datasets. The file name selects the format. Blocking; any thread.
#pragma once

#include <tarnis/formats/dataset.h>

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace tarnis {

/// The formats of files.
enum class FileFormat {
    Csv, ///< .csv, .txt, .tsv, .dat
    Npy, ///< .npy
    Spe, ///< .spe
    Hdf5 ///< .h5, .hdf5, .nxs; needs the component Tarnis::Hdf5 at run time
};

/// The format for the suffix of a file name, case-insensitive; empty for an unknown suffix.
TARNIS_EXPORT std::optional<FileFormat> formatOfName(const QString& path);

/// What encodeDataset() returns.
struct EncodeResult {
    QByteArray bytes; ///< the content of the file; empty if there is an error
    QString error; ///< empty on success, else the cause
};

/// The content of a file. An error if the dataset is inconsistent, does not fit the format, or the component is
/// missing.
TARNIS_EXPORT EncodeResult encodeDataset(const Dataset& data, FileFormat format);
/// The dataset of a file's content.
TARNIS_EXPORT DatasetResult decodeDataset(QByteArrayView bytes, FileFormat format);

/// Writes a file atomically, see writeFile(). Returns an empty text, or the cause without the path.
[[nodiscard]] TARNIS_EXPORT QString writeDataset(const QString& path, const Dataset& data);
/// Reads a file of up to 1 GiB. An empty title becomes the file's name.
TARNIS_EXPORT DatasetResult readDataset(const QString& path);

} // namespace tarnis
