#include "device/settings_text.h"

#include <QTest>

namespace {
SettingsValues exampleValues()
{
    SettingsValues values;
    values.kmControl = "//c1";
    values.usbControl = "//u2";
    values.limitPorts = "//D4";
    values.cursorRolling = "//o1";
    values.resolutions = {"//CE 1 1", "//CE 2 10", "//CE 3 3", "//CE 4 13"};
    values.customSettings = {"//MM C1 100 250 OFFICE", "//MM C2 120 080 DESK",
                             "//MM C3 001 500 HOME", ""};
    values.dataLabels = {"100 250 OFFICE", "120 080 DESK", "001 500 HOME", ""};
    values.gridSettings = "//FF01B01FF02B02FF03B03FF04B04";
    values.coordinates = {"0 0", "0 1", "0 2", "0 3"};
    values.buzzer = "//B0";
    values.mouseMode = "//ks";
    return values;
}

constexpr char exampleText[] = "KM Control: //c1\n"
                               "USB Control: //u2\n"
                               "Limit Ports: //D4\n"
                               "Cursor Rolling: //o1\n"
                               "Resolution channel 1: //CE 1 1\n"
                               "Resolution channel 2: //CE 2 10\n"
                               "Resolution channel 3: //CE 3 3\n"
                               "Resolution channel 4: //CE 4 13\n"
                               "Custom mouse movement setting 1: //MM C1 100 250 OFFICE\n"
                               "Custom mouse movement setting 2: //MM C2 120 080 DESK\n"
                               "Custom mouse movement setting 3: //MM C3 001 500 HOME\n"
                               "Custom mouse movement setting 4: \n"
                               "Data from mouse movement label 1: 100 250 OFFICE\n"
                               "Data from mouse movement label 2: 120 080 DESK\n"
                               "Data from mouse movement label 3: 001 500 HOME\n"
                               "Data from mouse movement label 4: \n"
                               "Grid settings: //FF01B01FF02B02FF03B03FF04B04\n"
                               "Coordinates channel 1: 0 0\n"
                               "Coordinates channel 2: 0 1\n"
                               "Coordinates channel 3: 0 2\n"
                               "Coordinates channel 4: 0 3\n"
                               "Buzzer: //B0\n"
                               "Mouse Mode: //ks\n";
} // namespace

/// The settings file as text.
class SettingsTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTwentyThreeLines()
    {
        const QByteArray text = QByteArray::fromStdString(settingsText(exampleValues()));
        QCOMPARE(text, QByteArray(exampleText));
        QCOMPARE(text.count('\n'), 23);
    }

    void everyKeyIsFoundAgain_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QByteArray>("value");
        const auto row = [](const char *key, const char *value) {
            QTest::newRow(key) << QByteArray(key) << QByteArray(value);
        };
        row("KM Control: ", "//c1");
        row("USB Control: ", "//u2");
        row("Limit Ports: ", "//D4");
        row("Cursor Rolling: ", "//o1");
        row("Resolution channel 1: ", "//CE 1 1");
        row("Resolution channel 2: ", "//CE 2 10");
        row("Resolution channel 3: ", "//CE 3 3");
        row("Resolution channel 4: ", "//CE 4 13");
        row("Custom mouse movement setting 1: ", "//MM C1 100 250 OFFICE");
        row("Custom mouse movement setting 2: ", "//MM C2 120 080 DESK");
        row("Custom mouse movement setting 3: ", "//MM C3 001 500 HOME");
        row("Custom mouse movement setting 4: ", "");
        row("Data from mouse movement label 1: ", "100 250 OFFICE");
        row("Data from mouse movement label 2: ", "120 080 DESK");
        row("Data from mouse movement label 3: ", "001 500 HOME");
        row("Data from mouse movement label 4: ", "");
        row("Grid settings: ", "//FF01B01FF02B02FF03B03FF04B04");
        row("Coordinates channel 1: ", "0 0");
        row("Coordinates channel 2: ", "0 1");
        row("Coordinates channel 3: ", "0 2");
        row("Coordinates channel 4: ", "0 3");
        row("Buzzer: ", "//B0");
        row("Mouse Mode: ", "//ks");
    }

    void everyKeyIsFoundAgain()
    {
        QFETCH(QByteArray, key);
        QFETCH(QByteArray, value);
        const auto found = settingsValue(exampleText, key.toStdString());
        QVERIFY(found);
        QCOMPARE(QByteArray::fromStdString(*found), value);

        QByteArray withCrLf(exampleText);
        withCrLf.replace("\n", "\r\n");
        QCOMPARE(settingsValue(withCrLf.toStdString(), key.toStdString()), found);
    }

    void aMissingKeyIsToldFromAnEmptyValue()
    {
        QVERIFY(!settingsValue("KM Control: //c1\n", "USB Control: "));
        QCOMPARE(settingsValue("KM Control: \n", "KM Control: ").value(), std::string());
        QVERIFY(!settingsValue("", "KM Control: "));
    }

    void theLastLineNeedsNoLineEnd()
    {
        QCOMPARE(settingsValue("Buzzer: //B1", "Buzzer: ").value(), std::string("//B1"));
        QCOMPARE(settingsValue("Buzzer: //B1\r", "Buzzer: ").value(), std::string("//B1"));
    }

    void theFirstLineWithTheKeyCounts()
    {
        QCOMPARE(settingsValue("Buzzer: //B1\nBuzzer: //B0\n", "Buzzer: ").value(),
                 std::string("//B1"));
    }

    void aKeyInsideAValueIsNoKey()
    {
        constexpr char text[] = "Custom mouse movement setting 1: //MM C1 100 250 Buzzer: //F\n"
                                "Buzzer: //B1\n";
        QCOMPARE(settingsValue(text, "Buzzer: ").value(), std::string("//B1"));
    }

    void aByteOrderMarkDoesNotHideTheFirstKey()
    {
        QCOMPARE(settingsValue("\xEF\xBB\xBFKM Control: //c3\n", "KM Control: ").value(),
                 std::string("//c3"));
    }

    void aControlCharacterMakesTheKeyMissing_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<bool>("there");
        QTest::newRow("bell") << QByteArray("//c1\a") << false;
        QTest::newRow("carriage return inside") << QByteArray("//c1\r//F") << false;
        QTest::newRow("two carriage returns") << QByteArray("//c1\r\r") << false;
        QTest::newRow("escape") << QByteArray("\x1b//c1") << false;
        QTest::newRow("delete") << QByteArray("//c1\x7f") << false;
        QTest::newRow("beyond ASCII") << QByteArray("//c1\xC2\x85//F") << false;
        QTest::newRow("bytes that are no UTF-8") << QByteArray("//c1\x85") << true;
        QTest::newRow("tab") << QByteArray("//c1\t") << true;
        QTest::newRow("UTF-8") << QByteArray("B\xC3\xBCro") << true;
    }

    void aControlCharacterMakesTheKeyMissing()
    {
        QFETCH(QByteArray, value);
        QFETCH(bool, there);
        const QByteArray text = "KM Control: " + value + "\n";
        QCOMPARE(settingsValue(text.toStdString(), "KM Control: ").has_value(), there);
    }

    void oneKeyMakesASettingsFile()
    {
        QVERIFY(holdsAnySetting("note to self\nMouse Mode: //km\n"));
        QVERIFY(holdsAnySetting("Coordinates channel 3: "));
        QVERIFY(!holdsAnySetting(""));
        QVERIFY(!holdsAnySetting("Dear diary,\n\n KM Control: //c1\n"));
        QVERIFY(!holdsAnySetting("KM Control:\n"));
    }

    void coordinatesAreRowThenColumn()
    {
        QCOMPARE(coordinatesText({2, 1}), std::string("2 1"));
        QCOMPARE(coordinatesText({0, -1}), std::string("0 -1"));
        QCOMPARE(coordinatesText({1234, 5678}), std::string("1234 5678"));
        QCOMPARE(coordinatesText({12345, 6789}), std::string("12345 678"));
        QCOMPARE(coordinatesFrom("2 1").value(), (GridPosition{2, 1}));
        QCOMPARE(coordinatesFrom("3  0 ").value(), (GridPosition{3, 0}));
    }

    void coordinatesThatCannotBeRead_data()
    {
        QTest::addColumn<QByteArray>("value");
        for (const char *value : {"", "0", "1 ", " 1 2", "12", "1,2", "1 x", "x 1", "4 0", "0 4",
                                  "9 9", "-1 0", "0 -1", "1 2 3", "99999999999 0"})
            QTest::newRow(value) << QByteArray(value);
    }

    void coordinatesThatCannotBeRead()
    {
        QFETCH(QByteArray, value);
        QVERIFY(!coordinatesFrom(value.toStdString()));
    }
};

QTEST_GUILESS_MAIN(SettingsTextTest)
#include "tst_settings_text.moc"
