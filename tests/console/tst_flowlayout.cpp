// Rows of controls that wrap in a narrow window.
#include "app/flowlayout.h"

#include <QTest>
#include <QWidget>

using console::FlowLayout;

namespace {

constexpr int gap = 6;
constexpr int lineHeight = 20;

/// Controls 40 pixels wide, with a spacer behind the first ones.
class Row : public QWidget {
public:
    Row(int before, int behind)
        : m_layout(new FlowLayout(this))
    {
        m_layout->setSpacing(gap);
        for (int i = 0; i < before + behind; ++i) {
            if (i == before)
                m_layout->addItem(new QSpacerItem(0, 0, QSizePolicy::Expanding));
            auto* const control = new QWidget(this);
            control->setFixedSize(40, lineHeight);
            m_layout->addWidget(control);
            m_controls.append(control);
        }
    }
    /// Upper left corners of the controls at this width.
    QList<QPoint> at(int width)
    {
        m_layout->setGeometry(QRect(0, 0, width, m_layout->heightForWidth(width)));
        QList<QPoint> corners;
        for (const QWidget* const control : m_controls)
            corners.append(control->pos());
        return corners;
    }
    int heightAt(int width) const { return m_layout->heightForWidth(width); }

private:
    FlowLayout* m_layout;
    QList<QWidget*> m_controls;
};

} // namespace

class TestFlowLayout : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keepsWhatFollowsASpacerAtTheEnd_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<QList<QPoint>>("corners");
        QTest::addColumn<int>("lines");
        QTest::newRow("one line") << 200 << QList<QPoint> { { 0, 0 }, { 46, 0 }, { 114, 0 }, { 160, 0 } } << 1;
        // Three of them would fit in the first line, which would part the last two.
        QTest::newRow("two lines") << 150 << QList<QPoint> { { 0, 0 }, { 46, 0 }, { 64, 26 }, { 110, 26 } } << 2;
        QTest::newRow("a control a line") << 60 << QList<QPoint> { { 0, 0 }, { 0, 26 }, { 20, 52 }, { 20, 78 } } << 4;
        QTest::newRow("too narrow") << 30 << QList<QPoint> { { 0, 0 }, { 0, 26 }, { 0, 52 }, { 0, 78 } } << 4;
    }
    void keepsWhatFollowsASpacerAtTheEnd()
    {
        QFETCH(int, width);
        QFETCH(int, lines);
        Row row(2, 2);
        QTEST(row.at(width), "corners");
        QCOMPARE(row.heightAt(width), lines * lineHeight + (lines - 1) * gap);
    }

    void fillsLinesFromTheLeftWithoutASpacer()
    {
        Row row(3, 0);
        QCOMPARE(row.at(100), (QList<QPoint> { { 0, 0 }, { 46, 0 }, { 0, 26 } }));
    }

    void partsWhatIsTooLongForALine()
    {
        Row row(1, 3);
        QCOMPARE(row.at(100), (QList<QPoint> { { 0, 0 }, { 60, 0 }, { 14, 26 }, { 60, 26 } }));
    }

    void beginsWithASpacer()
    {
        Row atEnd(0, 2);
        QCOMPARE(atEnd.at(100), (QList<QPoint> { { 14, 0 }, { 60, 0 } }));
        QCOMPARE(atEnd.heightAt(100), lineHeight);
    }
};

QTEST_MAIN(TestFlowLayout)
#include "tst_flowlayout.moc"
