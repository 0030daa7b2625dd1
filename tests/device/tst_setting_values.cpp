#include "device/setting_values.h"

#include <QTest>
#include <stdexcept>

namespace {
SettingValues valuesOf(const QStringList &assignments)
{
    SettingValues values;
    for (const QString &assignment : assignments)
        values.add(assignment);
    return values;
}

/// What is said of `assignments`, taken one after the other; empty when nothing is.
QString mistakeIn(const QStringList &assignments)
{
    try {
        valuesOf(assignments);
    } catch (const std::invalid_argument &error) {
        return QString::fromStdString(error.what());
    }
    return {};
}

QString mistakeAt(const SwitchConfiguration &now, const QStringList &assignments)
{
    try {
        valuesOf(assignments).atSwitch(now);
    } catch (const std::invalid_argument &error) {
        return QString::fromStdString(error.what());
    }
    return {};
}

SwitchConfiguration withCustoms(const QStringList &names)
{
    SwitchConfiguration configuration;
    for (qsizetype at = 0; at < names.size(); ++at) {
        if (!names.at(at).isEmpty())
            configuration.custom.at(static_cast<std::size_t>(at)) =
                MouseMovement{100, 100, names.at(at)};
    }
    return configuration;
}
} // namespace

/// Settings as people write them.
class SettingValuesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKeyIsTaken()
    {
        const SwitchConfiguration wanted =
            valuesOf({QStringLiteral("km-control=3"), QStringLiteral("usb_control=1"),
                      QStringLiteral("active-ports=2"), QStringLiteral("cursor-rolling=on"),
                      QStringLiteral("buzzer=off"), QStringLiteral("mouse_mode=relative"),
                      QStringLiteral("resolution.1=13"), QStringLiteral("resolution.2=4k"),
                      QStringLiteral("custom.4=1 500 DESK"), QStringLiteral("layout=12/34")})
                .atSwitch({});
        QCOMPARE(wanted.kmControl, std::optional(3));
        QCOMPARE(wanted.usbControl, std::optional(1));
        QCOMPARE(wanted.activePorts, std::optional(2));
        QCOMPARE(wanted.cursorRolling, std::optional(true));
        QCOMPARE(wanted.buzzerOn, std::optional(false));
        QCOMPARE(wanted.relativeMouse, std::optional(true));
        QCOMPARE(wanted.resolutions.at(0), std::optional(13));
        QCOMPARE(wanted.resolutions.at(1), std::optional(2));
        QVERIFY(!wanted.resolutions.at(2));
        QCOMPARE(wanted.custom.at(3), std::optional(MouseMovement{1, 500, QStringLiteral("DESK")}));
        QVERIFY(wanted.layout == std::optional(DisplayLayout{{{0, 0}, {0, 1}, {1, 0}, {1, 1}}}));
    }

    void aMistakeIsNamedWithWhatIsGood_data()
    {
        QTest::addColumn<QString>("assignment");
        QTest::addColumn<QString>("said");
        const auto row = [](const char *assignment, const char *said) {
            QTest::newRow(assignment) << QString::fromUtf8(assignment) << QString::fromUtf8(said);
        };
        row("km-control", "is not KEY=VALUE");
        row("volume=3", "there are km-control, usb-control, active-ports");
        row("hotkey=x", "hotkey can be read only");
        row("km-control=0", "km-control is a number from 1 to 4, not \"0\"");
        row("km-control=5", "1 to 4");
        row("km-control=03", "1 to 4");
        row("km-control=3x", "1 to 4");
        row("km-control=", "1 to 4");
        row("usb-control=-1", "1 to 4");
        row("active-ports=1", "active-ports is a number from 2 to 4");
        row("buzzer=loud", "buzzer is off or on, not \"loud\"");
        row("cursor-rolling=1", "cursor-rolling is off or on");
        row("mouse-mode=abs", "mouse-mode is absolute or relative");
        row("resolution.1=14", "1 to 13");
        row("resolution.1=0", "1 to 13");
        row("resolution.1=two words", "1080p, 4K, 2K");
        row("resolution.1=", "1080p, 4K, 2K");
        row("resolution.5=1", "there is no setting \"resolution.5\"");
        row("custom.1=100 100", "three words");
        row("custom.1=0 100 DESK", "X and Y are numbers from 1 to 500");
        row("custom.1=100 501 DESK", "X and Y are numbers from 1 to 500");
        row("custom.1=100 100 SEVENTEENLETTERSX", "1 to 16 printable characters");
        row("custom.1=100 100 A\x01", "printable");
        row("custom.1=100 100 4k", "that of a resolution");
        row("layout=1234/1...", "holds channel 1 twice");
        row("layout=123", "lacks channel 4");
        row("layout=12345", "more than four cells");
        row("layout=1/2/3/4/.", "more than four rows");
        row("layout=12/3x", "neither a dot nor 1 to 4");
        row("layout=125/34", "neither a dot nor 1 to 4");
        row("layout=", "lacks channel 1");
    }

    void aMistakeIsNamedWithWhatIsGood()
    {
        QFETCH(QString, assignment);
        QFETCH(QString, said);
        const QString mistake = mistakeIn({assignment});
        QVERIFY2(mistake.contains(said), qPrintable(mistake));
    }

    void aKeyStandsOnce()
    {
        QCOMPARE(mistakeIn({QStringLiteral("buzzer=on"), QStringLiteral("buzzer=on")}),
                 QStringLiteral("buzzer is given twice"));
    }

    void aNameOfSixteenCharactersBeyondAsciiIsTaken()
    {
        QCOMPARE(mistakeIn({QStringLiteral("custom.1=100 100 ÄÖÜÄÖÜÄÖÜÄÖÜÄÖÜÄ")}), QString());
    }

    void aNameIsFoundAtTheSwitch()
    {
        const SwitchConfiguration now =
            withCustoms({QStringLiteral("LAB"), QStringLiteral("Desk"), {}, {}});
        const SwitchConfiguration wanted =
            valuesOf({QStringLiteral("resolution.3=desk")}).atSwitch(now);
        QCOMPARE(wanted.resolutions.at(2), std::optional(11));
        QVERIFY(!wanted.custom.at(1)); // what is not asked for is not wanted
    }

    void aNewNameCanBeUsedAtOnce()
    {
        const SwitchConfiguration wanted =
            valuesOf({QStringLiteral("resolution.1=HALL"), QStringLiteral("custom.3=10 20 HALL")})
                .atSwitch(withCustoms({QStringLiteral("A"), QStringLiteral("B"),
                                       QStringLiteral("C"), QStringLiteral("D")}));
        QCOMPARE(wanted.resolutions.at(0), std::optional(12));
    }

    void aNumberIsANumberWhateverANameSays()
    {
        const SwitchConfiguration now = withCustoms({QStringLiteral("7"), {}, {}, {}});
        QCOMPARE(valuesOf({QStringLiteral("resolution.1=7")}).atSwitch(now).resolutions.at(0),
                 std::optional(7));
    }

    void aPresetComesBeforeACustomNameOfTheSameKind()
    {
        const SwitchConfiguration now = withCustoms({QStringLiteral("2k"), {}, {}, {}});
        QCOMPARE(valuesOf({QStringLiteral("resolution.1=2K")}).atSwitch(now).resolutions.at(0),
                 std::optional(3));
    }

    void aNameThatStandsTwiceAsksForTheNumber()
    {
        const QString said =
            mistakeAt(withCustoms({QStringLiteral("LAB"), {}, QStringLiteral("lab"), {}}),
                      {QStringLiteral("resolution.2=Lab")});
        QVERIFY2(said.contains(QStringLiteral("the name of 10 and of 12; give the number")),
                 qPrintable(said));
    }

    void aNameWithAPercentSignIsNamedAsItIs()
    {
        const QString said =
            mistakeAt(withCustoms({QStringLiteral("%3%4"), {}, QStringLiteral("%3%4"), {}}),
                      {QStringLiteral("resolution.2=%3%4")});
        QVERIFY2(said.contains(QStringLiteral("\"%3%4\" is the name of 10 and of 12;")),
                 qPrintable(said));
    }

    void anUnknownNameIsNamedWithThoseThatThereAre()
    {
        const QString said = mistakeAt(withCustoms({QStringLiteral("LAB"), {}, {}, {}}),
                                       {QStringLiteral("resolution.2=HALL")});
        QVERIFY2(said.contains(QStringLiteral("1920x4320, LAB, not \"HALL\"")), qPrintable(said));
    }

    void aCustomNameIsNoOtherEntrys()
    {
        const SwitchConfiguration now =
            withCustoms({QStringLiteral("LAB"), QStringLiteral("DESK"), {}, {}});
        QVERIFY(mistakeAt(now, {QStringLiteral("custom.1=1 1 desk")})
                    .contains(QStringLiteral("the name of another custom setting already")));
        QCOMPARE(mistakeAt(now, {QStringLiteral("custom.2=1 1 desk")}), QString());
        // Both change: what counts is how they are in the end.
        QCOMPARE(mistakeAt(now, {QStringLiteral("custom.1=1 1 DESK"),
                                 QStringLiteral("custom.2=1 1 LAB")}),
                 QString());
    }

    void whatHasToBeKnownFirst()
    {
        QCOMPARE(valuesOf({QStringLiteral("buzzer=on")}).needed(), std::vector{SettingKey::Buzzer});
        QCOMPARE(valuesOf({QStringLiteral("layout=1234")}).needed(),
                 (std::vector{SettingKey::Layout, SettingKey::ActivePorts}));
        QCOMPARE(valuesOf({QStringLiteral("resolution.1=4K")}).needed(),
                 std::vector{resolutionSetting(1)});
        QCOMPARE(valuesOf({QStringLiteral("resolution.1=DESK")}).needed(),
                 (std::vector{resolutionSetting(1), customSetting(1), customSetting(2),
                              customSetting(3), customSetting(4)}));
    }

    void displaysTouchEdgeToEdge()
    {
        QVERIFY(touchEdgeToEdge(layoutFrom(QStringLiteral("1234"))));
        QVERIFY(touchEdgeToEdge(layoutFrom(QStringLiteral("..../.12./.34."))));
        QVERIFY(touchEdgeToEdge(layoutFrom(QStringLiteral("123/.4"))));
        QVERIFY(!touchEdgeToEdge(layoutFrom(QStringLiteral("12.3/...4"))));
        QVERIFY(!touchEdgeToEdge(layoutFrom(QStringLiteral("1.2./.3.4"))));
    }
};

QTEST_GUILESS_MAIN(SettingValuesTest)
#include "tst_setting_values.moc"
