// A plot of several series with access to its members.
#pragma once

#include "support/curveprobe.h"

namespace tarnis::testing {

class Plot : public tarnis::testing::MultiProbe {
public:
    Plot()
    {
        init(QStringLiteral("Channel"), QStringLiteral("Counts"), 500.0, 50.0, true, true);
        resize(400, 300);
        m_refreshRequired = false;
    }
};

} // namespace tarnis::testing
