// The reader of .spe files: an error, or a dataset that is unchanged after writing and reading it.
#include "formatcheck.h"

#include <tarnis/formats/spe.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tarnis::fuzzing::checkFormat(data, size, tarnis::decodeSpe, tarnis::encodeSpe);
    return 0;
}
