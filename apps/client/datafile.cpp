#include "datafile.h"

#include "output.h"

#include <tarnis/formats/formats.h>

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

tarnis::FileFormat formatOfContent(const QByteArray& bytes)
{
    if (bytes.startsWith("\x93NUMPY"))
        return tarnis::FileFormat::Npy;
    if (bytes.startsWith("\x89HDF"))
        return tarnis::FileFormat::Hdf5;
    return bytes.trimmed().startsWith('$') ? tarnis::FileFormat::Spe : tarnis::FileFormat::Csv;
}

tarnis::DatasetResult readStandardInput()
{
    const Result<QByteArray> input = readInput("-");
    if (!input.isOk())
        return { .data = {}, .error = input.failure().text };
    tarnis::DatasetResult result = tarnis::decodeDataset(input.value(), formatOfContent(input.value()));
    if (result.error.isEmpty() && result.data.title.isEmpty())
        result.data.title = QStringLiteral("standard input");
    return result;
}

} // namespace

Result<tarnis::Dataset> readDataFile(const QString& path)
{
    tarnis::DatasetResult file = path == u"-" ? readStandardInput() : tarnis::readDataset(path);
    if (!file.error.isEmpty())
        return Failure { .code = FileError, .text = QStringLiteral("cannot read '%1': %2").arg(path, file.error) };
    warnOfBadValues(file.data, path);
    return std::move(file.data);
}

void warnOfBadValues(const tarnis::Dataset& data, const QString& name)
{
    const auto bad =
        std::count_if(data.values.begin(), data.values.end(), [](double value) { return !std::isfinite(value); });
    if (bad > 0)
        printWarning(
            QStringLiteral("%1 of %2 values of '%3' are not finite").arg(bad).arg(data.values.size()).arg(name));
}

} // namespace cli
