#include "device/configuration_file.h"

#include "device/configuration_examples.h"

#include <QTest>

namespace {
const char exampleFile[] = "KM Control: //c2\n"
                           "USB Control: //u3\n"
                           "Limit Ports: //D3\n"
                           "Cursor Rolling: //o1\n"
                           "Resolution channel 1: //CE 1 1\n"
                           "Resolution channel 2: //CE 2 10\n"
                           "Resolution channel 3: //CE 3 3\n"
                           "Resolution channel 4: //CE 4 13\n"
                           "Custom mouse movement setting 1: //MM C1 100 250 OFFICE\n"
                           "Custom mouse movement setting 2: //MM C2 120 080 DESK\n"
                           "Custom mouse movement setting 3: //MM C3 001 500 HOME\n"
                           "Custom mouse movement setting 4: //MM C4 300 300 LAB\n"
                           "Data from mouse movement label 1: 100 250 OFFICE\n"
                           "Data from mouse movement label 2: 120 080 DESK\n"
                           "Data from mouse movement label 3: 001 500 HOME\n"
                           "Data from mouse movement label 4: 300 300 LAB\n"
                           "Grid settings: //FF01B05FF02B06FF03B10FF04B14\n"
                           "Coordinates channel 1: 1 0\n"
                           "Coordinates channel 2: 1 1\n"
                           "Coordinates channel 3: 2 1\n"
                           "Coordinates channel 4: 3 1\n"
                           "Buzzer: //B1\n"
                           "Mouse Mode: //km\n";

/// What a file can say: it has no hotkey.
SwitchConfiguration exampleInFile()
{
    SwitchConfiguration configuration = exampleConfiguration();
    configuration.hotkeyTrigger.reset();
    return configuration;
}

std::string fileWith(const QByteArray &before, const QByteArray &after)
{
    QByteArray text(exampleFile);
    if (!text.contains(before))
        qFatal("the example has no such text");
    return text.replace(before, after).toStdString();
}

QStringList texts(const std::vector<SettingsLineError> &errors)
{
    QStringList lines;
    for (const SettingsLineError &error : errors)
        lines.append(QStringLiteral("%1|").arg(error.line) + QString::fromStdString(error.key) +
                     QStringLiteral("|") + QString::fromStdString(error.value));
    return lines;
}

QStringList missing(const SettingsReading &reading)
{
    QStringList keys;
    for (const std::string &key : reading.missing)
        keys.append(QString::fromStdString(key));
    return keys;
}
} // namespace

/// A configuration as a settings file, both ways. Every file is typed by hand.
class ConfigurationFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTwentyThreeLines()
    {
        QCOMPARE(QByteArray::fromStdString(settingsText(exampleConfiguration())),
                 QByteArray(exampleFile));
    }

    void whatIsNotKnownIsEmpty()
    {
        const QByteArray text = QByteArray::fromStdString(settingsText(SwitchConfiguration{}));
        QCOMPARE(text.count('\n'), 23);
        QCOMPARE(text.count(": \n"), 23);
    }

    void aFileSaysItsConfiguration()
    {
        const SettingsReading reading = readSettings(exampleFile);
        QVERIFY(reading.configuration == exampleInFile());
        QCOMPARE(texts(reading.errors), QStringList());
        QCOMPARE(missing(reading), QStringList());
        QCOMPARE(reading.commands.size(), std::size_t(15));
        QCOMPARE(reading.commands.at(customSetting(2)), std::string("//MM C2 120 080 DESK"));
        QCOMPARE(reading.commands.at(SettingKey::Layout),
                 std::string("//FF01B05FF02B06FF03B10FF04B14"));
    }

    void lineEndsAMarkAndOtherLinesDoNoHarm()
    {
        QByteArray text = "\xEF\xBB\xBF" + QByteArray(exampleFile).replace("\n", "\r\n");
        QVERIFY(readSettings(text.toStdString()).configuration == exampleInFile());
        text = "# backup\n\n" + QByteArray(exampleFile) + "KM Control: //c4";
        QVERIFY(readSettings(text.toStdString()).configuration == exampleInFile());
    }

    void whatIsAlsoTaken_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("a blank behind a name") << QByteArray("DESK\nC") << QByteArray("DESK \nC");
        QTest::newRow("speeds without zeros")
            << QByteArray("120 080 DESK\nC") << QByteArray("120 80 DESK\nC");
        QTest::newRow("speeds padded with blanks")
            << QByteArray("C3 001 500") << QByteArray("C3   1 500");
        QTest::newRow("blanks behind a speed")
            << QByteArray("C3 001 500") << QByteArray("C3 1   500");
        QTest::newRow("blanks behind both speeds")
            << QByteArray("C3 001 500 ") << QByteArray("C3 1   500   ");
        QTest::newRow("blanks behind a name") << QByteArray("DESK\nC") << QByteArray("DESK   \nC");
        QTest::newRow("groups in another order") << QByteArray("//FF01B05FF02B06FF03B10FF04B14")
                                                 << QByteArray("//FF04B14FF02B06FF01B05FF03B10");
        QTest::newRow("a label that says something else")
            << QByteArray("1: 100 250 OFFICE") << QByteArray("1: ");
        QTest::newRow("no place beside grid settings")
            << QByteArray("channel 2: 1 1") << QByteArray("channel 2: ");
    }

    void whatIsAlsoTaken()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        const SettingsReading reading = readSettings(fileWith(before, after));
        QCOMPARE(texts(reading.errors), QStringList());
        QCOMPARE(missing(reading), QStringList());
        QVERIFY(reading.configuration == exampleInFile());
    }

    /// Whatever a switch calls a setting: a file that was saved from it can be applied again.
    void namesThatASwitchCanReport_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("a blank that holds together") << QByteArray("MY\xC2\xA0"
                                                                   "DESK");
        QTest::newRow("a wide blank") << QByteArray("\xE3\x80\x80"
                                                    "1");
        QTest::newRow("what stands for bytes that are no UTF-8") << QByteArray("\xEF\xBF\xBD");
        QTest::newRow("a mark of direction") << QByteArray("A\xE2\x80\xAE");
        QTest::newRow("83 bytes") << QByteArray(83, 'A');
    }
    void namesThatASwitchCanReport()
    {
        QFETCH(QByteArray, name);
        SwitchConfiguration configuration = exampleInFile();
        configuration.custom[2]->name = QString::fromUtf8(name);
        const SettingsReading reading = readSettings(settingsText(configuration));
        QCOMPARE(texts(reading.errors), QStringList());
        QVERIFY(reading.configuration == configuration);
        QCOMPARE(QByteArray::fromStdString(reading.commands.at(customSetting(3))),
                 QByteArray("//MM C3 001 500 " + name));
    }

    /// With its speeds in three characters each, as they are saved, the command has 99 bytes at
    /// most.
    void aNameThatCannotBeSavedIsNone()
    {
        const QByteArray fits(83, 'A');
        QCOMPARE(texts(readSettings(fileWith("001 500 HOME\nC", "1 1 " + fits + "\nC")).errors),
                 QStringList());
        QCOMPARE(
            texts(readSettings(fileWith("001 500 HOME\nC", "1 1 " + fits + "A\nC")).errors).size(),
            1);
    }

    void aLineWithOtherBlanksIsSentAsTheSwitchReadsIt_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("behind X") << QByteArray("C3 1   500 HOME");
        QTest::newRow("behind Y") << QByteArray("C3 1 500  HOME");
        QTest::newRow("before X") << QByteArray("C3     1 500 HOME");
        QTest::newRow("behind the name") << QByteArray("C3 1 500 HOME  ");
    }
    void aLineWithOtherBlanksIsSentAsTheSwitchReadsIt()
    {
        QFETCH(QByteArray, line);
        const SettingsReading reading = readSettings(fileWith("C3 001 500 HOME", line));
        QVERIFY(reading.configuration == exampleInFile());
        QCOMPARE(reading.commands.at(customSetting(3)), std::string("//MM C3 1 500 HOME "));
    }

    void aLineAsItStandsIsKeptForSending()
    {
        QCOMPARE(readSettings(fileWith("DESK\nC", "DESK \nC")).commands.at(customSetting(2)),
                 std::string("//MM C2 120 080 DESK "));
        QCOMPARE(readSettings(fileWith("C3 001 500", "C3   1 500")).commands.at(customSetting(3)),
                 std::string("//MM C3   1 500 HOME"));
        QCOMPARE(readSettings(fileWith("//FF01B05FF02B06", "//FF02B06FF01B05"))
                     .commands.at(SettingKey::Layout),
                 std::string("//FF02B06FF01B05FF03B10FF04B14"));
    }

    void errors_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QString>("error");
        QTest::addColumn<int>("key");
        const auto row = [](const char *before, const char *after, const char *error,
                            SettingKey key) {
            QTest::newRow(after) << QByteArray(before) << QByteArray(after)
                                 << QString::fromUtf8(error) << static_cast<int>(key);
        };
        row("//c2", "//F", "1|KM Control: |//F", SettingKey::KmControl);
        row("//c2", "//c5", "1|KM Control: |//c5", SettingKey::KmControl);
        row("//c2", "//c0", "1|KM Control: |//c0", SettingKey::KmControl);
        row("//c2", "//c02", "1|KM Control: |//c02", SettingKey::KmControl);
        row("//c2", "//c2 ", "1|KM Control: |//c2 ", SettingKey::KmControl);
        row("//c2", "//c", "1|KM Control: |//c", SettingKey::KmControl);
        row("//c2", " //c2", "1|KM Control: | //c2", SettingKey::KmControl);
        row("//c2", "//c2\r//F", "1|KM Control: |//c2\r//F", SettingKey::KmControl);
        row("//u3", "//c3", "2|USB Control: |//c3", SettingKey::UsbControl);
        row("//D3", "//D1", "3|Limit Ports: |//D1", SettingKey::ActivePorts);
        row("//D3", "//D5", "3|Limit Ports: |//D5", SettingKey::ActivePorts);
        row("//o1", "//o2", "4|Cursor Rolling: |//o2", SettingKey::CursorRolling);
        row("//o1", "Enabled", "4|Cursor Rolling: |Enabled", SettingKey::CursorRolling);
        row("//CE 1 1\n", "//CE 1 14\n", "5|Resolution channel 1: |//CE 1 14",
            resolutionSetting(1));
        row("//CE 1 1\n", "//CE 1 0\n", "5|Resolution channel 1: |//CE 1 0", resolutionSetting(1));
        row("//CE 2 10", "//CE 1 10", "6|Resolution channel 2: |//CE 1 10", resolutionSetting(2));
        row("//CE 4 13", "//CE 4  13", "8|Resolution channel 4: |//CE 4  13", resolutionSetting(4));
        row("//MM C1 100 250 OFFICE", "//MM C2 100 250 OFFICE",
            "9|Custom mouse movement setting 1: |//MM C2 100 250 OFFICE", customSetting(1));
        row("//MM C1 100 250 OFFICE", "//MM C1 100 501 OFFICE",
            "9|Custom mouse movement setting 1: |//MM C1 100 501 OFFICE", customSetting(1));
        row("//MM C1 100 250 OFFICE", "//MM C1 000 250 OFFICE",
            "9|Custom mouse movement setting 1: |//MM C1 000 250 OFFICE", customSetting(1));
        row("//MM C1 100 250 OFFICE", "//MM C1 100 250 ",
            "9|Custom mouse movement setting 1: |//MM C1 100 250 ", customSetting(1));
        row("//MM C1 100 250 OFFICE", "//MM C1 100 250 MY OFFICE",
            "9|Custom mouse movement setting 1: |//MM C1 100 250 MY OFFICE", customSetting(1));
        row("//MM C1 100 250 OFFICE", "//MM C1 100 250 A\tB",
            "9|Custom mouse movement setting 1: |//MM C1 100 250 A\tB", customSetting(1));
        row("//MM C1 100 250 OFFICE",
            "//MM C1 100 250 A\xEF\xBB\xBF"
            "B",
            "9|Custom mouse movement setting 1: |//MM C1 100 250 A\xEF\xBB\xBF"
            "B",
            customSetting(1));
        row("//MM C1 100 250 OFFICE", "//MM C1 100 250 A\xC2\x85",
            "9|Custom mouse movement setting 1: |//MM C1 100 250 A\xC2\x85", customSetting(1));
        row("//MM C1 100 250 OFFICE", "//MM C1 100 250 A\x7F",
            "9|Custom mouse movement setting 1: |//MM C1 100 250 A\x7F", customSetting(1));
        row("//MM C1 100 250 OFFICE", "//MM C1 100 250 A\xFF",
            "9|Custom mouse movement setting 1: |//MM C1 100 250 A\xFF", customSetting(1));
        row("Data from mouse movement label 3: 001", "Data from mouse movement label 3: \x1b[1m001",
            "15|Data from mouse movement label 3: |\x1b[1m001 500 HOME", SettingKey::Hotkey);
        row("//FF01B05FF02B06FF03B10FF04B14", "//F", "17|Grid settings: |//F", SettingKey::Layout);
        row("//FF01B05FF02B06FF03B10FF04B14", "//FF01B05FF02B06FF03B10FF04B17",
            "17|Grid settings: |//FF01B05FF02B06FF03B10FF04B17", SettingKey::Layout);
        row("//FF01B05FF02B06FF03B10FF04B14", "//FF01B05FF02B06FF03B10FF04B05",
            "17|Grid settings: |//FF01B05FF02B06FF03B10FF04B05", SettingKey::Layout);
        row("//FF01B05FF02B06FF03B10FF04B14", "//FF01B05FF02B06FF02B10FF04B14",
            "17|Grid settings: |//FF01B05FF02B06FF02B10FF04B14", SettingKey::Layout);
        row("//FF01B05FF02B06FF03B10FF04B14", "//FF01B05FF02B06FF03B10",
            "17|Grid settings: |//FF01B05FF02B06FF03B10", SettingKey::Layout);
        row("//FF01B05FF02B06FF03B10FF04B14", "//FF01B05FF02B06FF03A10FF04B14",
            "17|Grid settings: |//FF01B05FF02B06FF03A10FF04B14", SettingKey::Layout);
        row("//FF01B05FF02B06FF03B10FF04B14", "//FF01B05FF02B06FF13B10FF04B14",
            "17|Grid settings: |//FF01B05FF02B06FF13B10FF04B14", SettingKey::Layout);
        row("channel 3: 2 1", "channel 3: 2 4", "20|Coordinates channel 3: |2 4",
            SettingKey::Hotkey);
        row("//B1", "on", "22|Buzzer: |on", SettingKey::Buzzer);
        row("//km", "//kx", "23|Mouse Mode: |//kx", SettingKey::MouseMode);
    }

    void errors()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QString, error);
        QFETCH(int, key);
        const SettingsReading reading = readSettings(fileWith(before, after));
        QCOMPARE(texts(reading.errors), QStringList(error));
        QCOMPARE(missing(reading), QStringList());
        QVERIFY(!hasSetting(reading.configuration, static_cast<SettingKey>(key)));
        QVERIFY(!reading.commands.contains(static_cast<SettingKey>(key)));
        const bool isNothingToSend = static_cast<SettingKey>(key) == SettingKey::Hotkey;
        QCOMPARE(reading.commands.size(), std::size_t(isNothingToSend ? 15 : 14));
    }

    void missingKeysAreTold()
    {
        SettingsReading reading = readSettings(fileWith("Limit Ports: //D3\n", ""));
        QCOMPARE(missing(reading), QStringList(QStringLiteral("Limit Ports: ")));
        QVERIFY(!reading.configuration.activePorts);
        QCOMPARE(texts(reading.errors), QStringList());

        reading = readSettings(fileWith("Buzzer: //B1", "Buzzer: "));
        QCOMPARE(missing(reading), QStringList(QStringLiteral("Buzzer: ")));
        QVERIFY(!reading.configuration.buzzerOn);

        reading = readSettings(fileWith("Coordinates channel 2: 1 1\n", ""));
        QCOMPARE(missing(reading), QStringList(QStringLiteral("Coordinates channel 2: ")));

        QCOMPARE(missing(readSettings("")).size(), 23);
        QVERIFY(readSettings("").commands.empty());
    }

    void aFileSavedWithInactivePortsHasTheLayoutOfItsCoordinates()
    {
        const SettingsReading reading = readSettings(
            fileWith("//FF01B05FF02B06FF03B10FF04B14", "//FF01B05FF02B06FF03B10FF03B14"));
        QCOMPARE(texts(reading.errors), QStringList());
        QVERIFY(reading.configuration == exampleInFile());
        QCOMPARE(reading.commands.at(SettingKey::Layout),
                 std::string("//FF01B05FF02B06FF03B10FF04B14"));
    }

    void withoutItsCoordinatesItHasNone()
    {
        QByteArray text = QByteArray(exampleFile).replace("FF04B14", "FF03B14");
        const QByteArray places[] = {"3: ", "3: 2 9", "3: 1 1"};
        for (const QByteArray &place : places) {
            const SettingsReading reading =
                readSettings(QByteArray(text).replace("3: 2 1", place).toStdString());
            QVERIFY(!reading.configuration.layout);
            QCOMPARE(reading.errors.front().line, 17);
        }
    }
};

QTEST_GUILESS_MAIN(ConfigurationFileTest)
#include "tst_configuration_file.moc"
