// The reader of CSV files: an error, or a dataset that is unchanged after writing and reading it.
#include "formatcheck.h"

#include <tarnis/formats/csv.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tarnis::fuzzing::checkFormat(data, size, tarnis::decodeCsv, tarnis::encodeCsv);
    return 0;
}
