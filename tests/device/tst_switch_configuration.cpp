#include "device/configuration_examples.h"

#include <QTest>

namespace {
QStringList texts(const std::vector<SettingDifference> &differences)
{
    QStringList lines;
    for (const SettingDifference &difference : differences)
        lines.append(settingName(difference.key) + QStringLiteral(": ") +
                     difference.from.value_or(QStringLiteral("?")) + QStringLiteral(" -> ") +
                     difference.to);
    return lines;
}
} // namespace

/// The settings of a switch as a value: names, texts, differences.
class SwitchConfigurationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySettingHasItsName()
    {
        QStringList names;
        for (const SettingKey key : allSettingKeys()) {
            names.append(settingName(key));
            QCOMPARE(settingOfName(settingName(key)), std::optional(key));
        }
        QCOMPARE(names.join(QLatin1Char(' ')),
                 QStringLiteral("km-control usb-control active-ports cursor-rolling buzzer "
                                "mouse-mode resolution.1 resolution.2 resolution.3 resolution.4 "
                                "custom.1 custom.2 custom.3 custom.4 layout hotkey"));
        QVERIFY(!settingOfName(QStringLiteral("resolution.5")));
        QVERIFY(!settingOfName(QStringLiteral("resolution")));
        QVERIFY(!settingOfName(QString()));
    }

    void groupsAreNumberedFromOne()
    {
        QCOMPARE(settingName(resolutionSetting(4)), QStringLiteral("resolution.4"));
        QCOMPARE(settingName(customSetting(1)), QStringLiteral("custom.1"));
        QCOMPARE(settingNumber(customSetting(3)), 3);
        QCOMPARE(settingNumber(SettingKey::Layout), 0);
        QVERIFY(isResolution(resolutionSetting(1)));
        QVERIFY(!isResolution(customSetting(1)));
        QVERIFY(isCustomSetting(customSetting(4)));
        QVERIFY(!isCustomSetting(resolutionSetting(4)));
    }

    void valuesForPeople()
    {
        const SwitchConfiguration configuration = exampleConfiguration();
        QStringList values;
        for (const SettingKey key : allSettingKeys())
            values.append(settingText(configuration, key).value());
        QCOMPARE(
            values,
            (QStringList{QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("3"),
                         QStringLiteral("on"), QStringLiteral("on"), QStringLiteral("relative"),
                         QStringLiteral("1080p"), QStringLiteral("OFFICE"), QStringLiteral("2K"),
                         QStringLiteral("LAB"), QStringLiteral("100 250 OFFICE"),
                         QStringLiteral("120 80 DESK"), QStringLiteral("1 500 HOME"),
                         QStringLiteral("300 300 LAB"), QStringLiteral("..../12../.3../.4.."),
                         QStringLiteral("Scroll Lock")}));
    }

    void theOtherWords()
    {
        SwitchConfiguration configuration;
        configuration.cursorRolling = false;
        configuration.buzzerOn = false;
        configuration.relativeMouse = false;
        QCOMPARE(settingText(configuration, SettingKey::CursorRolling).value(),
                 QStringLiteral("off"));
        QCOMPARE(settingText(configuration, SettingKey::Buzzer).value(), QStringLiteral("off"));
        QCOMPARE(settingText(configuration, SettingKey::MouseMode).value(),
                 QStringLiteral("absolute"));
    }

    void nothingIsKnownAtFirst()
    {
        for (const SettingKey key : allSettingKeys()) {
            QVERIFY(!hasSetting({}, key));
            QVERIFY(!settingText({}, key));
        }
        QCOMPARE(SwitchConfiguration{}, SwitchConfiguration{});
    }

    void aNameThatTellsNothingGivesWayToTheNumber()
    {
        SwitchConfiguration configuration = exampleConfiguration();
        configuration.custom[3]->name = QStringLiteral("OFFICE");
        QCOMPARE(settingText(configuration, resolutionSetting(2)).value(), QStringLiteral("10"));
        QCOMPARE(settingText(configuration, resolutionSetting(4)).value(), QStringLiteral("13"));
        configuration.custom[3].reset();
        QCOMPARE(settingText(configuration, resolutionSetting(2)).value(),
                 QStringLiteral("OFFICE"));
        QCOMPARE(settingText(configuration, resolutionSetting(4)).value(), QStringLiteral("13"));
    }

    void layoutsAsText()
    {
        QCOMPARE(layoutText({{{0, 0}, {0, 1}, {0, 2}, {0, 3}}}),
                 QStringLiteral("1234/..../..../...."));
        QCOMPARE(layoutText({{{3, 3}, {2, 0}, {1, 2}, {0, 1}}}),
                 QStringLiteral(".4../..3./2.../...1"));
    }

    void anArrangementIsOnTheGridWithoutTwoInOneCell()
    {
        QVERIFY(isArrangement({{{0, 0}, {0, 1}, {0, 2}, {3, 3}}}));
        QVERIFY(!isArrangement({{{0, 0}, {0, 1}, {0, 2}, {0, 0}}}));
        QVERIFY(!isArrangement({{{0, 0}, {0, 1}, {0, 2}, {0, 4}}}));
        QVERIFY(!isArrangement({{{0, 0}, {0, 1}, {-1, 2}, {0, 3}}}));
    }

    void codesTakenStrictly()
    {
        QCOMPARE(cellOfCode("01"), std::optional(GridPosition{0, 0}));
        QCOMPARE(cellOfCode("09"), std::optional(GridPosition{2, 0}));
        QCOMPARE(cellOfCode("16"), std::optional(GridPosition{3, 3}));
        for (const char *code : {"", "1", "00", "17", "99", "1x", " 1", "001", "-1"})
            QVERIFY2(!cellOfCode(code), code);
    }

    void theSameSettingsDifferInNothing()
    {
        QCOMPARE(texts(differences(exampleConfiguration(), exampleConfiguration())), QStringList());
    }

    void everyDifferenceIsToldByItsKey()
    {
        SwitchConfiguration to;
        to.kmControl = 1;
        to.usbControl = 4;
        to.activePorts = 4;
        to.cursorRolling = false;
        to.buzzerOn = false;
        to.relativeMouse = false;
        to.resolutions = {2, 11, 4, 9};
        to.custom = exampleConfiguration().custom;
        to.custom[1] = MouseMovement{7, 80, QStringLiteral("DESK")};
        to.layout = DisplayLayout{{{0, 0}, {0, 1}, {0, 2}, {0, 3}}};
        to.hotkeyTrigger = QStringLiteral("F1");
        QCOMPARE(
            texts(differences(exampleConfiguration(), to)),
            (QStringList{
                QStringLiteral("km-control: 2 -> 1"), QStringLiteral("usb-control: 3 -> 4"),
                QStringLiteral("active-ports: 3 -> 4"), QStringLiteral("cursor-rolling: on -> off"),
                QStringLiteral("buzzer: on -> off"),
                QStringLiteral("mouse-mode: relative -> absolute"),
                QStringLiteral("resolution.1: 1080p -> 4K"),
                QStringLiteral("resolution.2: OFFICE -> DESK"),
                QStringLiteral("resolution.3: 2K -> 3840x1080"),
                QStringLiteral("resolution.4: LAB -> 1920x4320"),
                QStringLiteral("custom.2: 120 80 DESK -> 7 80 DESK"),
                QStringLiteral("layout: ..../12../.3../.4.. -> 1234/..../..../....")}));
    }

    void whatIsNotKnownBeforeDiffersAndWhatIsNotWantedDoesNot()
    {
        SwitchConfiguration from;
        from.usbControl = 1;
        SwitchConfiguration to;
        to.kmControl = 3;
        QCOMPARE(texts(differences(from, to)), QStringList(QStringLiteral("km-control: ? -> 3")));
    }

    void aNameInCapitalsIsTheSame()
    {
        SwitchConfiguration to = exampleConfiguration();
        to.custom[0]->name = QStringLiteral("Office");
        QVERIFY(to != exampleConfiguration());
        QCOMPARE(texts(differences(exampleConfiguration(), to)), QStringList());
        to.custom[0]->name = QStringLiteral("Offices");
        QCOMPARE(texts(differences(exampleConfiguration(), to)),
                 QStringList(QStringLiteral("custom.1: 100 250 OFFICE -> 100 250 Offices")));
    }

    void aRenamedCustomSettingIsNoOtherResolution()
    {
        SwitchConfiguration to = exampleConfiguration();
        to.custom[0]->name = QStringLiteral("DEN");
        QCOMPARE(texts(differences(exampleConfiguration(), to)),
                 QStringList(QStringLiteral("custom.1: 100 250 OFFICE -> 100 250 DEN")));
    }
};

QTEST_GUILESS_MAIN(SwitchConfigurationTest)
#include "tst_switch_configuration.moc"
