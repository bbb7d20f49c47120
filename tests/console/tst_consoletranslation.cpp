// All texts in the console's open windows when the language changes: no text of the previous language remains.
#include "app/language.h"
#include "console/fullconsole.h"
#include "notices/messagelist.h"
#include "settings/settingspanel.h"
#include "support/wait.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/dialogs/statdialog.h>
#include <tarnis/foundation/systemmessages.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QHeaderView>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QSet>
#include <QTableView>
#include <QTableWidget>
#include <QXmlStreamReader>

using namespace console;
using namespace tarnis::testing;

namespace {

/// Without labels: what the server calls an axis stays as it is in every language.
class UnlabelledServer : public FullServer {
public:
    UnlabelledServer()
    {
        answer("hist2d image bins:256x256",
            { Step::doubles(QList<double>(256 * 256, 1.0), "OK: exported 256 x 256 y\n") });
        answer("hists",
            { Step::text("OK:\ntime: kind=1d rows=8 bins=1024 min=0 max=40\n"
                         "total: kind=1d bins=1024 min=0 max=40\n"
                         "position: kind=1d rows=8 bins=1000 min=0 max=1000\n"
                         "spectrum: kind=1d bins=100 min=0 max=100\n"
                         "image: kind=2d binsx=256 minx=0 maxx=1 binsy=256 miny=0 maxy=1\n") });
        answer("setting", { Step::text("OK:\nthreshold: 20\n") });
        answer("ls-F \"/data\"", { Step::text("OK:\nrun000001_20260101_120000/\nnotes\n") });
    }
};

/// Texts of a catalogue as patterns: placeholders match anything.
class Vocabulary {
public:
    void add(const QString& text)
    {
        QString pattern = QRegularExpression::escape(text);
        pattern.replace(QRegularExpression(QStringLiteral("%L?(\\d|n)|\\\\%(\\\\)?L?(\\d|n)")), QStringLiteral(".+"));
        QString letters = text;
        letters.remove(QRegularExpression(QStringLiteral("%L?(\\d|n)|[^A-Za-z]")));
        if (letters.size() < 3)
            return; // has no text in any language
        if (!text.contains(u'%')) {
            m_texts.insert(text);
            return;
        }
        m_patterns.append(QRegularExpression(
            QRegularExpression::anchoredPattern(pattern), QRegularExpression::DotMatchesEverythingOption));
    }
    bool holds(const QString& text) const
    {
        return m_texts.contains(text)
            || std::any_of(m_patterns.begin(), m_patterns.end(),
                [&](const QRegularExpression& pattern) { return pattern.match(text).hasMatch(); });
    }

private:
    QSet<QString> m_texts; ///< without placeholders: hundreds, each a pattern, take seconds under a sanitizer
    QList<QRegularExpression> m_patterns;
};

struct Catalogue {
    Vocabulary english;
    Vocabulary german;

    void read(const QString& path)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s is missing", qPrintable(path));
        QXmlStreamReader xml(&file);
        QString source;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            if (xml.name() == u"source")
                source = xml.readElementText();
            else if (xml.name() == u"translation" || xml.name() == u"numerusform")
                addPair(source, xml.readElementText(QXmlStreamReader::IncludeChildElements));
        }
    }
    void addPair(const QString& source, const QString& translation)
    {
        if (translation == source)
            return;
        english.add(source);
        german.add(translation);
    }
};

int addType(const MultiVectorGraphWidget& plot)
{
    struct PlotProbe : MultiVectorGraphWidget {
        static int of(const MultiVectorGraphWidget& plot) { return plot.*(&PlotProbe::m_addType); }
    };
    return PlotProbe::of(plot);
}

QString plain(QString text)
{
    static const QRegularExpression key(QStringLiteral(" \\([^()]*(F\\d+|\\+.)\\)$")); // of withKey()
    text.remove(key);
    return text;
}

void addTexts(QStringList& texts, const QObject& object)
{
    for (const char* const property :
        { "text", "title", "windowTitle", "toolTip", "placeholderText", "accessibleName", "accessibleDescription" }) {
        const QString text = plain(object.property(property).toString());
        if (!text.isEmpty() && !qobject_cast<const QLineEdit*>(&object))
            texts.append(text);
    }
    if (const auto* const plot = qobject_cast<const XYGraphWidget*>(&object))
        texts << plot->getNameX() << plot->getNameY();
    if (const auto* const header = qobject_cast<const QHeaderView*>(&object)) {
        for (int i = 0; header->model() && header->orientation() == Qt::Horizontal && i < header->count(); ++i)
            texts.append(header->model()->headerData(i, Qt::Horizontal).toString());
    }
    if (const auto* const box = qobject_cast<const QComboBox*>(&object)) {
        for (int i = 0; i < box->count(); ++i)
            texts.append(box->itemText(i));
    }
}

/// All texts in the open windows, except those written by users and servers.
QStringList textsOnShow()
{
    QStringList texts;
    const QWidgetList all = QApplication::allWidgets();
    for (const QWidget* const widget : all) {
        if (!widget->window()->isVisible() && !qobject_cast<const QMenu*>(widget))
            continue;
        if (qobject_cast<const QPlainTextEdit*>(widget))
            continue; // a record of previous messages
        addTexts(texts, *widget);
        const auto actions = widget->actions();
        for (const QAction* const action : actions)
            addTexts(texts, *action);
    }
    texts.removeDuplicates();
    return texts;
}

QStringList leftOver(const Vocabulary& before, const Vocabulary& now)
{
    QStringList left;
    const QStringList texts = textsOnShow();
    for (const QString& text : texts) {
        if (before.holds(text) && !now.holds(text))
            left.append(text);
    }
    return left;
}

} // namespace

class TestConsoleTranslation : public QObject {
    Q_OBJECT

    Catalogue m_catalogue;

    static void openAll(ConsoleFixture& fixture)
    {
        for (const WindowEntry& entry : fixture.window->entries())
            fixture.window->openWindow(entry);
    }

    /// Waits until pending replies have arrived and are shown.
    void change(ConsoleFixture& fixture, const char* action, const Vocabulary& before, const Vocabulary& now)
    {
        fixture.choose(action);
        QStringList left;
        const bool isClean = eventually([&] {
            left = leftOver(before, now);
            return left.isEmpty();
        });
        QVERIFY2(isClean, qPrintable(left.join(QStringLiteral(" | "))));
    }
    void changeThereAndBack(ConsoleFixture& fixture)
    {
        change(fixture, "deAction", m_catalogue.english, m_catalogue.german);
        change(fixture, "enAction", m_catalogue.german, m_catalogue.english);
        QVERIFY(!textsOnShow().contains(QStringLiteral("desc")));
    }

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setQuitOnLastWindowClosed(false);
        m_catalogue.read(QStringLiteral(SOURCE_DIRECTORY "/apps/console/translations/tarnis-console_de.ts"));
        m_catalogue.read(QStringLiteral(SOURCE_DIRECTORY "/tarnis/translations/tarnis_de.ts"));
    }
    void cleanup() { setLanguage(QStringLiteral("en")); }

    void withoutAServer()
    {
        ConsoleFixture fixture;
        openAll(fixture);
        changeThereAndBack(fixture);
    }

    void withEveryWindow()
    {
        UnlabelledServer server;
        ConsoleFixture fixture;
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        fixture.widget<QLineEdit>("ipEdit").setText(QStringLiteral("192.168.0.16"));
        fixture.press("addressButton");
        QVERIFY(fixture.widget<QLabel>("addressLabel").text().startsWith(u"Set: "));
        openAll(fixture);
        changeThereAndBack(fixture);
    }

    void whenTheServerIsLost()
    {
        auto server = std::make_unique<UnlabelledServer>();
        ConsoleFixture fixture;
        fixture.use(*server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        openAll(fixture);
        server.reset();
        QVERIFY(fixture.reaches(ServerState::Failed));
        TRY_VERIFY(!fixture.alert().text.isEmpty());
        changeThereAndBack(fixture);
    }

    void retranslatesTheTitleOfALiveWindow()
    {
        UnlabelledServer server;
        ConsoleFixture fixture;
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        auto* const curves = fixture.open<Graph1DDialog>("curves");
        const auto* const label = curves->findChild<QLabel*>(QStringLiteral("descLabel"));
        QCOMPARE(label->text(), "Module 0-7");
        fixture.choose("deAction");
        TRY_COMPARE(label->text(), "Modul 0-7");
        QCOMPARE(curves->windowTitle(), "Ankunftszeiten");
        QCOMPARE(curves->getGraphWidget()->getNameX(), "Zeit [us]");
        QCOMPARE(curves->getGraphWidget()->m_groupName, "Modul");
        fixture.choose("enAction");
        TRY_COMPARE(label->text(), "Module 0-7");
    }

    void messagesOfTheLibraryAreShownInTheLanguage()
    {
        MessageList list;
        const tarnis::SystemMessage crash { "Server process crashed.", {} };
        tarnis::SystemMessages::instance().post(crash);
        QVERIFY2(
            list.toPlainText().endsWith(QLatin1String("  Server process crashed.")), qPrintable(list.toPlainText()));
        setLanguage(QStringLiteral("de"));
        tarnis::SystemMessages::instance().post(crash);
        QVERIFY(list.toPlainText().endsWith(QString::fromUtf8("  Der Serverprozess ist abgest\u00fcrzt.")));
    }

    void theMenuOfAColourBarIsTranslated()
    {
        UnlabelledServer server;
        ConsoleFixture fixture;
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        fixture.choose("deAction");
        auto* const map = fixture.open<Graph2DDialog>("map");
        auto* const plot = map->getGraphWidget();
        QTest::mouseClick(plot, Qt::RightButton, {}, QPoint(plot->width() - 8, plot->height() / 2));
        QMenu* menu = nullptr;
        TRY_VERIFY((menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())));
        QCOMPARE(menu->actions().at(0)->text(), "Muster - Regenbogen 1");
        QCOMPARE(menu->actions().at(8)->text(), QString::fromUtf8(" \u00c4ndern - Farbe des Maximums"));
        menu->close();
    }

    void theKeyboardBoxFitsAndFollows()
    {
        ConsoleFixture fixture;
        fixture.choose("keysAction");
        const auto* const box = fixture.window->findChild<QDialog*>(QStringLiteral("keyboardBox"));
        const auto* const table = box->findChild<QTableWidget*>(QStringLiteral("keyTable"));
        QVERIFY(box->height() <= 500);
        QVERIFY(table->rowCount() > 20);
        const int width = table->fontMetrics().horizontalAdvance(table->item(table->rowCount() - 3, 0)->text());
        QVERIFY(table->columnWidth(0) > width);
        fixture.choose("deAction");
        TRY_COMPARE(table->item(table->rowCount() - 1, 1)->text(),
            QStringLiteral("In einem Diagramm: eine Kurve verbergen oder zeigen; zweimal: sie allein zeigen"));
    }

    void theKeyboardDialogListsTheKeysOfTheWindows()
    {
        ConsoleFixture fixture;
        fixture.choose("keysAction");
        const auto* const table =
            fixture.window->findChild<QDialog*>(QStringLiteral("keyboardBox"))->findChild<QTableWidget*>();
        QStringList rows;
        for (int row = 0; row < table->rowCount(); ++row)
            rows.append(table->item(row, 0)->text() + QLatin1String(": ") + table->item(row, 1)->text());
        for (const char* const expected : { "F5: In Runs and the snapshots: refresh",
                 "F3, Shift+F3: In the log file: find further down and up", "Ctrl+O: In Text on the Server: open",
                 "Ctrl+S, Ctrl+Shift+S: In Text on the Server: save, save under another name" })
            QVERIFY2(rows.contains(QLatin1String(expected)), expected);
    }

    void whatIsAddedUpDoesNotDependOnTheLanguage()
    {
        UnlabelledServer server;
        ConsoleFixture fixture;
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        fixture.choose("deAction");
        auto* const curves = fixture.open<Graph1DDialog>("curves");
        auto& box = *curves->findChild<QComboBox*>(QStringLiteral("typeComboBox"));
        QCOMPARE(box.itemText(0), "Jede Kurve");
        box.setCurrentIndex(1);
        QCOMPARE(addType(*curves->getGraphWidget()), int(MultiVectorGraphWidget::AddAll));
        box.setCurrentIndex(0);
        QCOMPARE(addType(*curves->getGraphWidget()), int(MultiVectorGraphWidget::AddEachGroup));
    }
};

QTEST_MAIN(TestConsoleTranslation)
#include "tst_consoletranslation.moc"
