// The functions that the core library looks up when it loads this one. Their names are defined in
// tarnis/formats/formatmodule_p.h.
#include "tarnis/formats/formatmodule_p.h"
#include "tarnis/hdf5/nexusfile.h"

extern "C" {

TARNIS_HDF5_EXPORT void tarnis_hdf5_encode(const tarnis::Dataset& data, tarnis::EncodeResult& result)
{
    result = tarnis::encodeHdf5(data);
}

TARNIS_HDF5_EXPORT void tarnis_hdf5_decode(QByteArrayView bytes, tarnis::DatasetResult& result)
{
    result = tarnis::decodeHdf5(bytes);
}
}
