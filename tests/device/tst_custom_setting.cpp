#include "device/custom_setting.h"

#include <QTest>

namespace {
MovementSetting setting(const char *name, const char *x, const char *y)
{
    return {QString::fromUtf8(name), QString::fromUtf8(x), QString::fromUtf8(y)};
}

/// A resolution selector's items as they stand once the switch has reported four settings.
QStringList choices()
{
    return {QStringLiteral("1080p"),     QStringLiteral("4K"),        QStringLiteral("2K"),
            QStringLiteral("3840x1080"), QStringLiteral("5760x1080"), QStringLiteral("7680x1080"),
            QStringLiteral("1920x2160"), QStringLiteral("1920x3240"), QStringLiteral("1920x4320"),
            QStringLiteral("DESK"),      QStringLiteral("OFFICE"),    QStringLiteral("HOME"),
            QStringLiteral("Lab")};
}
} // namespace

/// Texts of the mouse page: commands, validation, labels, reported values. All typed by hand.
class CustomSettingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resolutionCommands()
    {
        QCOMPARE(resolutionCommand(4, 2), std::string("//CE 4 3"));
        QCOMPARE(resolutionCommand(1, 0), std::string("//CE 1 1"));
    }

    void theNinthPresetIsNineAndTheFirstCustomSettingTen()
    {
        QCOMPARE(resolutionCommand(1, 8), std::string("//CE 1 9"));
        QCOMPARE(resolutionCommand(1, 9), std::string("//CE 1 10"));
        QCOMPARE(resolutionCommand(3, 12), std::string("//CE 3 13"));
    }

    void theSubmittedCommandEndsInABlank()
    {
        QCOMPARE(submittedCommand(2, setting("DESK", "120", "80")),
                 std::string("//MM C2 120 80 DESK "));
    }

    void theStoredCommandDoesNot()
    {
        QCOMPARE(storedCommand(2, setting("DESK", "120", "80")),
                 std::string("//MM C2 120 80 DESK"));
        QCOMPARE(storedCommand(1, setting("DESK", "5  ", " 80")),
                 std::string("//MM C1 5    80 DESK"));
    }

    void theNameGoesOutAsTyped()
    {
        QCOMPARE(submittedCommand(1, setting("My Desk", "1", "500")),
                 std::string("//MM C1 1 500 My Desk "));
        QCOMPARE(submittedCommand(4, setting("B\xC3\xBCro", "1", "2")),
                 std::string("//MM C4 1 2 B\xC3\xBCro "));
    }

    void aCommandHasAtMost99BytesAndKeepsItsBlank()
    {
        const QByteArray eighty(80, 'A');
        const std::string command = submittedCommand(1, setting(eighty + "BCDEFGH", "100", "250"));
        QCOMPARE(command.size(), std::size_t(99));
        QCOMPARE(command, "//MM C1 100 250 " + std::string(80, 'A') + "BC ");
        const std::string stored = storedCommand(1, setting(eighty + "BCDEFGH", "100", "250"));
        QCOMPARE(stored, "//MM C1 100 250 " + std::string(80, 'A') + "BCD");
    }

    void aLongNameIsCutAtAWholeCharacter()
    {
        const QByteArray eightyOne(81, 'A');
        QCOMPARE(submittedCommand(1, setting(eightyOne + "\xC3\xBC", "100", "250")),
                 "//MM C1 100 250 " + std::string(81, 'A') + " ");
        QCOMPARE(storedCommand(1, setting(eightyOne + "\xE2\x82\xAC", "100", "250")),
                 "//MM C1 100 250 " + std::string(81, 'A'));
    }

    void anEndlessNumberStaysWithinTheBuffer()
    {
        const std::string command =
            submittedCommand(1, setting("N", QByteArray(120, '9') + "1", "1"));
        QCOMPARE(command, "//MM C1 " + std::string(90, '9') + " ");
    }

    void speedsAreSentAsTheSwitchReadsThem_data()
    {
        QTest::addColumn<QByteArray>("typed");
        QTest::addColumn<QByteArray>("sent");
        QTest::newRow("as they are typed") << QByteArray("80") << QByteArray("80");
        QTest::newRow("filled up with zeros") << QByteArray("080") << QByteArray("080");
        QTest::newRow("between blanks") << QByteArray(" 80\t") << QByteArray("80");
        QTest::newRow("with a sign") << QByteArray("+80") << QByteArray("80");
        QTest::newRow("with more zeros than there are digits")
            << QByteArray("0080") << QByteArray("80");
    }
    void speedsAreSentAsTheSwitchReadsThem()
    {
        QFETCH(QByteArray, typed);
        QFETCH(QByteArray, sent);
        QCOMPARE(customSettingProblem(setting("NEW", typed, typed), 0, choices()), QString());
        QCOMPARE(QByteArray::fromStdString(submittedCommand(2, setting("NEW", typed, "1"))),
                 "//MM C2 " + sent + " 1 NEW ");
        QCOMPARE(QByteArray::fromStdString(submittedCommand(2, setting("NEW", "1", typed))),
                 "//MM C2 1 " + sent + " NEW ");
    }

    void aPastedLineEndDoesNotStartACommand()
    {
        QCOMPARE(submittedCommand(1, setting("A\r//F\r\n", "1", "2")),
                 std::string("//MM C1 1 2 A//F "));
    }

    void problems_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("x");
        QTest::addColumn<QString>("y");
        QTest::addColumn<int>("edited");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char *title, const char *name, const char *x, const char *y,
                            int edited, const char *problem) {
            QTest::newRow(title) << QString::fromUtf8(name) << QString::fromUtf8(x)
                                 << QString::fromUtf8(y) << edited << QString::fromUtf8(problem);
        };
        constexpr auto noName = "Enter name of setting";
        constexpr auto noX = "Enter X for setting";
        constexpr auto noY = "Enter Y for setting";
        constexpr auto taken = "This custom name already exists";
        constexpr auto range = "Mouse Speed Range is between 1-500";

        row("all is well", "NEW", "100", "250", 0, "");
        row("X = 0", "NEW", "0", "250", 0, range);
        row("X = 501", "NEW", "501", "250", 0, range);
        row("X = 1", "NEW", "1", "250", 0, "");
        row("X = 500", "NEW", "500", "250", 0, "");
        row("X = abc", "NEW", "abc", "250", 0, range);
        row("X = 12abc", "NEW", "12abc", "250", 0, range);
        row("X negative", "NEW", "-5", "250", 0, range);
        row("X beyond an int", "NEW", "99999999999", "250", 0, range);
        row("Y = 0", "NEW", "100", "0", 0, range);
        row("Y = 501", "NEW", "100", "501", 0, range);
        row("Y = 1", "NEW", "100", "1", 0, "");
        row("Y = 500", "NEW", "100", "500", 0, "");
        row("Y = abc", "NEW", "100", "abc", 0, range);
        row("nothing entered: the name comes first", "", "", "", 0, noName);
        row("name of blanks", "  ", "100", "250", 0, noName);
        row("name of control characters", "\x01 \xC2\x85", "100", "250", 0, noName);
        row("name of a byte order mark", "\xEF\xBB\xBF\xEF\xBB\xBF", "100", "250", 0, noName);
        row("X before Y", "NEW", "", "", 0, noX);
        row("Y missing", "NEW", "100", "", 0, noY);
        row("Y missing comes before a taken name", "OFFICE", "100", "", 0, noY);
        row("name of setting 3 while editing setting 1", "HOME", "100", "250", 0, taken);
        row("the same in lower case", "home", "100", "250", 0, taken);
        row("a taken name comes before the range", "home", "0", "0", 0, taken);
        row("its own name", "DESK", "100", "250", 0, "");
        row("its own name in lower case", "desk", "100", "250", 0, "");
        row("a preset's name", "4K", "100", "250", 0, taken);
        row("a preset's name that upper case changes", "1080p", "100", "250", 0, "");
        row("a name shown in lower case is not met", "lab", "100", "250", 0, "");
    }

    void problems()
    {
        QFETCH(QString, name);
        QFETCH(QString, x);
        QFETCH(QString, y);
        QFETCH(int, edited);
        QFETCH(QString, problem);
        QCOMPARE(customSettingProblem({name, x, y}, edited, choices()), problem);
    }

    void entryNames()
    {
        QCOMPARE(customEntryName("100 250 OFFICE", 8), std::string("OFFICE"));
        QCOMPARE(customEntryName("100 250 MY DESK\t1 \r", 8), std::string("MYDESK1"));
        QCOMPARE(customEntryName("//MM C1 100 250 OFFICE", 15), std::string("OFFICE"));
        QCOMPARE(customEntryName("100 250 A\x7F\xC2\x85\xC2\x9B"
                                 "B\xC2\xA0\xC3\x9C",
                                 8),
                 std::string("AB\xC2\xA0\xC3\x9C"));
        // A byte order mark is lost wherever a text begins with it: it is at no place in a name.
        QCOMPARE(customEntryName("100 250  \xEF\xBB\xBF\xEF\xBB\xBFMY\xEF\xBB\xBF DESK", 8),
                 std::string("MYDESK"));
        // What is left may not become a control character: here U+0085.
        QCOMPARE(customEntryName("100 250 A\xC2 \x85", 8),
                 std::string("A\xEF\xBF\xBD\xEF\xBF\xBD"));
    }

    void aMissingOrShortEntryHasNoName()
    {
        QCOMPARE(customEntryName("0", 8), std::string());
        QCOMPARE(customEntryName("", 8), std::string());
        QCOMPARE(customEntryName("100 250 ", 8), std::string());
    }

    void theLabelSplitsIntoItsFields()
    {
        const DataLabelFields fields = dataLabelFields(QStringLiteral("100 250 OFFICE"));
        QCOMPARE(fields.x, QStringLiteral("100"));
        QCOMPARE(fields.y.value(), QStringLiteral("250"));
        QCOMPARE(fields.name.value(), QStringLiteral("OFFICE"));
    }

    void blanksAndTabsLeaveTheName()
    {
        const DataLabelFields fields = dataLabelFields(QStringLiteral("  5\t 80\t MY DESK\t2"));
        QCOMPARE(fields.x, QStringLiteral("  5"));
        QCOMPARE(fields.y.value(), QStringLiteral(" 80"));
        QCOMPARE(fields.name.value(), QStringLiteral("MYDESK2"));
    }

    void aShortLabelEndsTheFill()
    {
        const DataLabelFields none = dataLabelFields(QString());
        QCOMPARE(none.x, QString());
        QVERIFY(!none.y);

        const DataLabelFields xOnly = dataLabelFields(QStringLiteral("100"));
        QCOMPARE(xOnly.x, QStringLiteral("100"));
        QVERIFY(!xOnly.y);
        QVERIFY(!xOnly.name);

        const DataLabelFields emptyY = dataLabelFields(QStringLiteral("100 "));
        QCOMPARE(emptyY.y.value(), QString());
        QVERIFY(!emptyY.name);

        const DataLabelFields noName = dataLabelFields(QStringLiteral("100 250"));
        QCOMPARE(noName.y.value(), QStringLiteral("250"));
        QVERIFY(!noName.name);

        const DataLabelFields emptyName = dataLabelFields(QStringLiteral("100 250 "));
        QCOMPARE(emptyName.name.value(), QString());
    }

    void reportedResolutions_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QList<int>>("items"); // -1: none
        QTest::newRow("blanks") << QByteArray(" 1 2 3 4") << QList<int>{0, 1, 2, 3};
        QTest::newRow("commas") << QByteArray("1,10,3,13") << QList<int>{0, 9, 2, 12};
        QTest::newRow("anything") << QByteArray("a9b-8;;7\t13\r") << QList<int>{8, 7, 6, 12};
        QTest::newRow("zero and fourteen") << QByteArray("0 14 2 3") << QList<int>{-1, -1, 1, 2};
        QTest::newRow("beyond any integer")
            << QByteArray("99999999999999999999999 2 4294967297 3") << QList<int>{-1, 1, -1, 2};
        QTest::newRow("two numbers") << QByteArray("5 6") << QList<int>{4, 5, -1, -1};
        QTest::newRow("five numbers") << QByteArray("5 6 7 8 9") << QList<int>{4, 5, 6, 7};
        QTest::newRow("absent key") << QByteArray("0") << QList<int>{-1, -1, -1, -1};
        QTest::newRow("no number") << QByteArray("unknown") << QList<int>{-1, -1, -1, -1};
        QTest::newRow("leading zeros") << QByteArray("01 002 0 13") << QList<int>{0, 1, -1, 12};
        QTest::newRow("empty") << QByteArray("") << QList<int>{-1, -1, -1, -1};
    }

    void fourTokensAreNamesOrNumbers_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QList<int>>("items"); // -1: none
        QTest::newRow("presets by name")
            << QByteArray(" 4K 1080p 1920x4320 2K") << QList<int>{1, 0, 8, 2};
        QTest::newRow("names and numbers")
            << QByteArray("4K 10 OFFICE 1080p") << QList<int>{1, 9, 10, 0};
        QTest::newRow("whatever the case")
            << QByteArray("4k DESK LAB 3840X1080") << QList<int>{1, 9, 12, 3};
        QTest::newRow("commas and semicolons")
            << QByteArray("home,4K;13, ;desk") << QList<int>{11, 1, 12, 9};
        QTest::newRow("tabs and a CR")
            << QByteArray("\tHOME\t4K\t2\t1080p\r") << QList<int>{11, 1, 1, 0};
        QTest::newRow("what is neither")
            << QByteArray("4Kx 2x 10th DESK") << QList<int>{-1, -1, -1, 9};
        QTest::newRow("numbers of no item")
            << QByteArray("0 14 1080 4") << QList<int>{-1, -1, -1, 3};
        QTest::newRow("negative") << QByteArray("-3 4K 5 6") << QList<int>{-1, 1, 4, 5};
        QTest::newRow("no UTF-8") << QByteArray("\xff 4K 5 6") << QList<int>{-1, 1, 4, 5};
    }

    void fourTokensAreNamesOrNumbers() { reportedResolutions(); }

    void anotherCountOfTokensIsReadForNumbersAlone_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QList<int>>("items"); // -1: none
        QTest::newRow("three names")
            << QByteArray("DESK OFFICE HOME") << QList<int>{-1, -1, -1, -1};
        QTest::newRow("three") << QByteArray("4K 5 6") << QList<int>{3, 4, 5, -1};
        QTest::newRow("five") << QByteArray("4K 5 6 7 8") << QList<int>{3, 4, 5, 6};
    }

    void anotherCountOfTokensIsReadForNumbersAlone() { reportedResolutions(); }

    void aNumberIsANumberWhateverASettingIsCalled()
    {
        QStringList entries = choices();
        entries[9] = QStringLiteral("7");
        entries[10] = QStringLiteral("14");
        const std::array<std::optional<int>, 4> items = channelResolutions("7 14 07 1", entries);
        QCOMPARE(items[0], std::optional(6));
        QCOMPARE(items[1], std::optional(10));
        QCOMPARE(items[2], std::optional(6));
        QCOMPARE(items[3], std::optional(0));
    }

    void aNameBeyondAsciiIsFoundInEitherCase()
    {
        QStringList entries = choices();
        entries[9] = QStringLiteral("B\u00DCRO");
        QCOMPARE(channelResolutions("b\xC3\xBCro 1 2 3", entries)[0], std::optional(9));
    }

    void emptyEntriesHaveNoName()
    {
        QStringList entries = choices();
        entries[9].clear();
        QCOMPARE(channelResolutions("x ,, 4K desk 1", entries)[0], std::nullopt);
        QCOMPARE(channelResolutions("x ,, 4K desk 1", entries)[1], std::optional(1));
    }

    void reportedResolutions()
    {
        QFETCH(QByteArray, value);
        QFETCH(QList<int>, items);
        QList<int> read;
        for (const std::optional<int> item : channelResolutions(value.toStdString(), choices()))
            read.append(item.value_or(-1));
        QCOMPARE(read, items);
    }
};

QTEST_GUILESS_MAIN(CustomSettingTest)
#include "tst_custom_setting.moc"
