#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/e2e/AccessibleTree.h"
#include "tests/e2e/ProgramUnderTest.h"

#include "mainwindow/Commands.h"

#include <QtTest>

namespace
{

/// Whether the button of a row stands in the window in Live mode, whatever the camera does.
bool standsInLive(const Commands::Row &row)
{
    using Commands::Group;
    return row.skin && row.group != Group::Card && Modes::contains(row.modes, Modes::Live);
}

/// As the toolkit names them on the bus.
const QString PRESS = "Press";
const QString SHOW_MENU = "ShowMenu";

} // namespace

/// The program as a screen reader meets it, on the bus of a desktop's session.
class ProgramAccessibleTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_reader.works());
        QVERIFY(ProgramUnderTest::waitForWindowManager());
        QVERIFY(m_program.start() && m_program.waitForWindow());
        QTRY_VERIFY_WITH_TIMEOUT(!m_reader.part("Line").path.isEmpty(), TIMEOUT_MS);
    }
    void cleanupTestCase() { QVERIFY(m_program.closeAndWait()); }

    void everyButtonIsThere()
    {
        for (const Commands::Row &row : Commands::rows()) {
            if (!standsInLive(row))
                continue;
            const QVector<AccessiblePart> found = m_reader.parts(row.text);
            // One starts a recording in the side panel and one below the picture.
            const int expected = row.command == Command::Record ? 2 : 1;
            QVERIFY2(found.size() == expected,
                     qPrintable(QString("%1: %2").arg(row.text).arg(found.size())));
            const AccessiblePart &part = found.first();
            QVERIFY2(part.actions.contains(PRESS), row.text);
            const bool hasOptions =
                row.holdSlot || (row.tool && row.popUp != Commands::PopUp::None);
            QVERIFY2(part.actions.contains(SHOW_MENU) == hasOptions, row.text);
            const bool oneOfSeveral = row.tool || row.group == Commands::Group::Modes;
            const bool checkable = row.look & (Commands::Checkable | Commands::Checked);
            const QString role = oneOfSeveral ? "radio button"
                                 : checkable  ? "check box"
                                              : "push button";
            QVERIFY2(part.role == role, qPrintable(row.text + (": " + part.role)));
        }
    }

    void aPressIsAClick()
    {
        QVERIFY(m_reader.part("Freehand").checked);
        QVERIFY(m_reader.act(m_reader.part("Arrow"), PRESS));
        QTRY_VERIFY_WITH_TIMEOUT(m_reader.part("Arrow").checked, TIMEOUT_MS);
        QVERIFY(!m_reader.part("Freehand").checked);
    }

    void optionsOpen()
    {
        QVERIFY(m_reader.act(m_reader.part("Line"), SHOW_MENU));
        QTRY_VERIFY_WITH_TIMEOUT(m_reader.part("Line Width: 3 pixels").checked, TIMEOUT_MS);
        QVERIFY(m_reader.act(m_reader.part("Line Width: 6 pixels"), PRESS));
        QTRY_VERIFY_WITH_TIMEOUT(m_reader.part("Line Width: 6 pixels").checked, TIMEOUT_MS);
        m_program.pressKeys("Escape");
        QTRY_VERIFY_WITH_TIMEOUT(m_reader.part("Line Width: 6 pixels").path.isEmpty(), TIMEOUT_MS);
    }

    void indicationsAndModesAreToldOnce()
    {
        QStringList expected = m_reader.notified();
        QVERIFY(m_reader.act(m_reader.part("Freeze"), PRESS));
        expected << "The picture is frozen.";
        QTRY_COMPARE_WITH_TIMEOUT(m_reader.notified(), expected, TIMEOUT_MS);
        QVERIFY(m_reader.act(m_reader.part("Film"), PRESS));
        expected << "Film";
        QTRY_COMPARE_WITH_TIMEOUT(m_reader.notified(), expected, TIMEOUT_MS);
    }

    void slidersHaveValues()
    {
        QVERIFY(m_reader.act(m_reader.part("Film"), PRESS));
        QTRY_VERIFY_WITH_TIMEOUT(!m_reader.part("Position in the film").path.isEmpty(), TIMEOUT_MS);
        QCOMPARE(m_reader.part("Position in the film").role, QString("slider"));
        QCOMPARE(m_reader.value(m_reader.part("Position in the film")), 0.0);
    }

private:
    AccessibleTree m_reader;
    ProgramUnderTest m_program;
};

REGISTER_TEST(ProgramAccessibleTest)
#include "tst_program_accessible.moc"
