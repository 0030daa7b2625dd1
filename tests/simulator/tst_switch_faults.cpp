#include "simulator/switch_answers.h"
#include "simulator/switch_model.h"

#include <QTest>
#include <algorithm>
#include <chrono>

namespace {

const QByteArray factoryConfiguration = "//RL Pelora KM switch\n"
                                        "KM Port Limit: 4\n"
                                        "KM Cursor Rolling: Disabled\n"
                                        "KM tracking mode: Absolute Mouse Mode\n"
                                        "Channels resolution: 1 1 1 1\n"
                                        "Buzzer: on\n"
                                        "C1\t100 100 CUSTOM1\n"
                                        "C2\t100 100 CUSTOM2\n"
                                        "C3\t100 100 CUSTOM3\n"
                                        "C4\t100 100 CUSTOM4\n";
const QByteArray factoryStatus = "Current Hotkey Trigger: Left Ctrl\n"
                                 "Current KM Control: 1\n"
                                 "Current USB Control 1\n";
const QByteArray factoryLayout = "//FF01B01FF02B02FF03B03FF04B04\n";

QByteArray answerTo(SwitchModel &model, const QByteArray &bytes)
{
    return joined(model.receive(bytes));
}

} // namespace

/// What goes wrong on purpose.
class SwitchFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void silenceObeysAndSaysNothing()
    {
        SwitchModel model;
        model.setFaults({.silent = true});
        QCOMPARE(answerTo(model, "//c2\r//rl\r"), QByteArray());
        QVERIFY(model.press(4).empty());
        QCOMPARE(model.state().kmControl, 4);
    }

    void delayAndChunksShapeThePieces()
    {
        using namespace std::chrono_literals;
        SwitchModel model;
        model.setFaults({.delay = 300ms, .chunkBytes = 2, .chunkGap = 7ms});
        const std::vector<Piece> pieces = model.receive("//c2\r");
        QCOMPARE(pieces.size(), std::size_t(3));
        QCOMPARE(pieces[0].bytes, QByteArray("**"));
        QCOMPARE(pieces[1].bytes, QByteArray("C2"));
        QCOMPARE(pieces[2].bytes, QByteArray("\n"));
        QVERIFY(pieces[0].wait == 300ms);
        QVERIFY(pieces[1].wait == 7ms);
        QVERIFY(pieces[2].wait == 7ms);
        QVERIFY(pieces[0].whole && pieces[1].whole && pieces[2].whole);
        model.setFaults({});
        QVERIFY(!model.receive("//c2\r").front().whole);
    }

    void garbageStandsBeforeEveryAnswer()
    {
        SwitchModel model;
        model.setFaults({.garbage = true});
        const QByteArray junk("\x00\xFF\xFE\x80#?\x1B[31m~\n", 13);
        QCOMPARE(answerTo(model, "//c2\r//u3\r"), junk + "**C2\n" + junk + "**U3\n");
    }

    void missingKeysAreLeftOut_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QByteArray>("line");

        const auto row = [](const QString &key, const QByteArray &line) {
            QTest::newRow(qPrintable(key)) << key << line;
        };
        row(QStringLiteral("//RL"), "//RL Pelora KM switch\n");
        row(QStringLiteral("KM Port Limit"), "KM Port Limit: 4\n");
        row(QStringLiteral("KM Cursor Rolling"), "KM Cursor Rolling: Disabled\n");
        row(QStringLiteral("KM tracking mode"), "KM tracking mode: Absolute Mouse Mode\n");
        row(QStringLiteral("Channels resolution"), "Channels resolution: 1 1 1 1\n");
        row(QStringLiteral("Buzzer"), "Buzzer: on\n");
        row(QStringLiteral("C1"), "C1\t100 100 CUSTOM1\n");
        row(QStringLiteral("C2"), "C2\t100 100 CUSTOM2\n");
        row(QStringLiteral("C3"), "C3\t100 100 CUSTOM3\n");
        row(QStringLiteral("C4"), "C4\t100 100 CUSTOM4\n");
        row(QStringLiteral("Current Hotkey Trigger"), "Current Hotkey Trigger: Left Ctrl\n");
        row(QStringLiteral("Current KM Control"), "Current KM Control: 1\n");
        row(QStringLiteral("Current USB Control"), "Current USB Control 1\n");
        row(QStringLiteral("//FF"), factoryLayout);
    }

    void missingKeysAreLeftOut()
    {
        QFETCH(QString, key);
        QFETCH(QByteArray, line);
        SwitchModel model;
        SwitchFaults faults;
        faults.missingKeys = {key.toStdString()};
        model.setFaults(faults);
        QByteArray expected = factoryConfiguration + factoryStatus + factoryLayout;
        QVERIFY(expected.contains(line));
        expected.replace(line, "");
        QCOMPARE(answerTo(model, "//rl\r//??\r//BP\r"), expected);
        const auto &keys = answerKeys();
        QVERIFY(std::find(keys.begin(), keys.end(), key.toStdString()) != keys.end());
        QCOMPARE(keys.size(), std::size_t(14));
    }

    void linesCanEndInCarriageReturnAndLineFeed()
    {
        SwitchModel model;
        model.setFaults({.crlf = true});
        QCOMPARE(answerTo(model, "//??\r"), QByteArray("Current Hotkey Trigger: Left Ctrl\r\n"
                                                       "Current KM Control: 1\r\n"
                                                       "Current USB Control 1\r\n"));
    }

    void anOversizeAnswerKeepsItsLines()
    {
        SwitchModel model;
        model.setFaults({.oversizeBytes = 1500});
        const QByteArray answer = answerTo(model, "//rl\r");
        QCOMPARE(answer.size(), factoryConfiguration.size() + 1500);
        QVERIFY(answer.startsWith("//RL Pelora KM switch\n"));
        QVERIFY(answer.endsWith(factoryConfiguration.mid(22)));
    }

    void aFloodComesOnceBehindTheLayout()
    {
        SwitchModel model;
        model.setFaults({.floodBytes = 200000});
        const QByteArray first = answerTo(model, "//BP\r");
        QCOMPARE(first.size(), factoryLayout.size() + 200000);
        QVERIFY(first.startsWith(factoryLayout));
        QVERIFY(first.endsWith('\n'));
        QVERIFY(!first.contains("KM"));
        QCOMPARE(first.count("//"), 1);
        QCOMPARE(answerTo(model, "//BP\r"), factoryLayout);
        QCOMPARE(joined(model.flood(70)).size(), qsizetype(70));
    }

    void theFirstReadsCanHaveABadPortLimit()
    {
        SwitchModel model;
        model.setFaults({.badPortLimitReads = 2});
        QVERIFY(answerTo(model, "//rl\r").contains("\nKM Port Limit: x\n"));
        QVERIFY(answerTo(model, "//??\r").contains("Current KM Control: 1\n"));
        QVERIFY(answerTo(model, "//rl\r").contains("\nKM Port Limit: x\n"));
        QVERIFY(answerTo(model, "//rl\r").contains("\nKM Port Limit: 4\n"));
    }

    void theOtherDialectHasAColon()
    {
        SwitchModel model;
        model.setFaults({.usbColon = true});
        QVERIFY(answerTo(model, "//??\r").endsWith("Current USB Control: 1\n"));
    }

    void speedsCanBePaddedWithBlanks()
    {
        SwitchModel model;
        model.setFaults({.blankPadding = true});
        answerTo(model, "//MM C1 7 80 LOW \r//MM C2 120 8 DESK \r//MM C3 500 500 FAST \r");
        const QByteArray answer = answerTo(model, "//rl\r");
        QVERIFY2(answer.endsWith("\nC1\t  7  80 LOW\n"
                                 "C2\t120   8 DESK\n"
                                 "C3\t500 500 FAST\n"
                                 "C4\t100 100 CUSTOM4\n"),
                 answer.constData());
    }
};

QTEST_GUILESS_MAIN(SwitchFaultsTest)
#include "tst_switch_faults.moc"
