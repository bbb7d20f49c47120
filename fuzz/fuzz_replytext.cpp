// The two parsers of reply text against their reference implementations. The input is the reply in UTF-8.
#include "support/textoracle.h"

#include <tarnis/server/tarniscmd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    tarnis::testing::Sections sections;
    TarnisCmd::devideByKey(text, sections);
    if (sections != tarnis::testing::spelledSections(text))
        std::abort();

    const QStringList lines = text.split(QLatin1Char('\n'));
    tarnis::testing::Values values;
    TarnisCmd::makeNameValueMap(lines, values);
    if (values != tarnis::testing::spelledValues(lines))
        std::abort();
    return 0;
}
