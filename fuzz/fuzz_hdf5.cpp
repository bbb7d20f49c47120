// The reader of HDF5 files: an error, or a dataset that is written and read back as it is.
#include "formatcheck.h"

#include <tarnis/hdf5/nexusfile.h>

static QByteArray encode(const tarnis::Dataset& data)
{
    return tarnis::encodeHdf5(data).bytes;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tarnis::fuzzing::checkFormat(data, size, tarnis::decodeHdf5, encode);
    return 0;
}
