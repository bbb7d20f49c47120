// A plot of the channels of modules, on the screen, with the dialogs of its tools.
#pragma once

#include "support/curveprobe.h"

#include <tarnis/dialogs/selectcheckeddialog.h>
#include <tarnis/peak/peaksearchdialog.h>

#include <QAbstractButton>
#include <QTest>

namespace tarnis::testing {

class Plot : public tarnis::testing::MultiProbe {
public:
    Plot()
    {
        init(QStringLiteral("Channel"), QStringLiteral("Counts"), 0.0, 0.0, true, true);
        m_groupName = QStringLiteral("Module");
        m_itemName = QStringLiteral("ch");
        m_doubleBuffered = true;
        resize(400, 300);
        show();
    }
    /// Adds `count` series of two samples; those of series i are i + 1.
    void fill(int count)
    {
        resizeData(count);
        for (int i = 0; i < count; ++i)
            setData(i, QList<double>(2, i + 1), i + 1);
    }
    SelectCheckedDialog* visibles() { return qobject_cast<SelectCheckedDialog*>(m_visibleDialogs.map.value(this)); }
    PeakSearchDialog* peakDialog() { return qobject_cast<PeakSearchDialog*>(m_peakDialogs.map.value(this)); }
};

/// Clicks the button with this object name.
template <typename Dialog> void click(Dialog& dialog, const char* button)
{
    auto* found = dialog.template findChild<QAbstractButton*>(QLatin1String(button));
    QTest::mouseClick(found, Qt::LeftButton, {}, QPoint(8, found->height() / 2));
}

} // namespace tarnis::testing
