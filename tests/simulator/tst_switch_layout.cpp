#include "simulator/switch_layout.h"
#include "simulator/switch_model.h"

#include <QTest>
#include <set>

/// Layout commands that a switch understands by half.
class SwitchLayoutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsNamedOnceIsPlacedAndTheOthersStay_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QByteArray>("layout");
        QTest::addColumn<QByteArray>("remark");

        const auto row = [](const char *name, const char *command, const char *layout,
                            const char *remark) {
            QTest::newRow(name) << QByteArray(command) << QByteArray(layout) << QByteArray(remark);
        };
        row("three active ports", "//FF01B05FF02B06FF03B10FF03B14", "Layout: 05 06 03 04\n",
            "channels 1 and 2 placed; channel 3 stays, it is named twice; channel 4 stays, it is "
            "not named");
        row("in another order", "//FF03B05FF01B06FF03B07FF04B16", "Layout: 06 02 03 16\n",
            "channels 1 and 4 placed; channel 2 stays, it is not named; channel 3 stays, it is "
            "named twice");
        row("one thrice", "//FF02B05FF02B06FF02B07FF04B08", "Layout: 01 02 03 08\n",
            "channel 4 placed; channel 1 stays, it is not named; channel 2 stays, it is named "
            "three times; channel 3 stays, it is not named");
        row("where they are", "//FF01B01FF02B02FF03B03FF03B04", "Layout: 01 02 03 04\n",
            "channels 1 and 2 placed; channel 3 stays, it is named twice; channel 4 stays, it is "
            "not named");
        row("cells of the one that is named twice are free", "//FF01B10FF02B14FF03B10FF03B14",
            "Layout: 10 14 03 04\n",
            "channels 1 and 2 placed; channel 3 stays, it is named twice; channel 4 stays, it is "
            "not named");
        row("two change places", "//FF01B02FF02B01FF03B10FF03B10", "Layout: 02 01 03 04\n",
            "channels 1 and 2 placed; channel 3 stays, it is named twice; channel 4 stays, it is "
            "not named");
        row("onto one that stays", "//FF01B03FF02B06FF03B10FF03B14", "Layout: 01 06 03 04\n",
            "channel 2 placed; channel 1 stays, channel 3 stays in cell 3; channel 3 stays, it is "
            "named twice; channel 4 stays, it is not named");
        row("where the one that stays is not", "//FF01B02FF03B10FF03B14FF02B01",
            "Layout: 02 01 03 04\n",
            "channels 1 and 2 placed; channel 3 stays, it is named twice; channel 4 stays, it is "
            "not named");
    }

    void whatIsNamedOnceIsPlacedAndTheOthersStay()
    {
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, layout);
        QFETCH(QByteArray, remark);
        SwitchModel model;
        QByteArrayList reports;
        model.onEvent = [&](const SwitchEvent &event) {
            if (event.kind == SwitchEvent::Kind::TakenInPart)
                reports << QByteArray::fromStdString(event.text + " " + event.reason);
        };
        const QByteArray answer = joined(model.receive(command + "\r"));
        QVERIFY2(answer.startsWith("Saving horizontal dimension as "), answer.constData());
        const QByteArray state = QByteArray::fromStdString(model.stateText());
        QVERIFY2(state.contains(layout), state.constData());
        QCOMPARE(reports, QByteArrayList{command + " " + remark});
        QCOMPARE(model.obeyedCount(), 1);
        QCOMPARE(model.rejectedCount(), 0);
    }

    void theAnswerTellsTheLayoutThatCameOut()
    {
        SwitchModel model;
        // channel 1 under channel 2; 3 and 4 stay in columns 3 and 4
        QCOMPARE(joined(model.receive("//FF01B06FF02B02FF03B09FF03B13\r")),
                 QByteArray("Saving horizontal dimension as 3\n"));
    }

    void aWholeLayoutLeavesNothingToReport()
    {
        SwitchModel model;
        int reports = 0;
        model.onEvent = [&](const SwitchEvent &event) {
            reports += event.kind == SwitchEvent::Kind::TakenInPart ? 1 : 0;
        };
        QCOMPARE(joined(model.receive("//FF01B04FF02B03FF03B02FF04B01\r")),
                 QByteArray("Saving horizontal dimension as 4\n"));
        QCOMPARE(reports, 0);
    }

    void whereNothingCanBePlacedNothingIsTaken()
    {
        SwitchModel model;
        // 3 keeps its cell, so 1 cannot go there and keeps its own, so 2 cannot go there
        QCOMPARE(joined(model.receive("//FF01B03FF02B01FF03B10FF03B14\r")), QByteArray());
        QCOMPARE(QByteArray::fromStdString(model.lastRejection()),
                 QByteArray("no channel placed; channel 1 stays, channel 3 stays in cell 3; "
                            "channel 2 stays, channel 1 stays in cell 1; channel 3 stays, it is "
                            "named twice; channel 4 stays, it is not named"));
        QCOMPARE(model.obeyedCount(), 0);
        QVERIFY(model.state() == SwitchState{});
    }

    void noTwoDisplaysEverShareACell()
    {
        int placings = 0;
        for (int first = 1; first <= 16; ++first) {
            for (int second = 1; second <= 16; ++second) {
                SwitchModel model;
                model.receive(QStringLiteral("//FF01B%1FF02B%2FF03B07FF03B07\r")
                                  .arg(first, 2, 10, QLatin1Char('0'))
                                  .arg(second, 2, 10, QLatin1Char('0'))
                                  .toLatin1());
                const auto &layout = model.state().layout;
                QCOMPARE(std::set<int>(layout.begin(), layout.end()).size(), std::size_t(4));
                QCOMPARE(layout[2], 3);
                QCOMPARE(layout[3], 4);
                QVERIFY(layout[0] == first || layout[0] == 1);
                QVERIFY(layout[1] == second || layout[1] == 2);
                placings += layout[0] == first && layout[1] == second ? 1 : 0;
            }
        }
        // 14 cells are free for the first, then 13 for the second; in all of these both are placed
        QCOMPARE(placings, 14 * 13);
    }
};

QTEST_GUILESS_MAIN(SwitchLayoutTest)
#include "tst_switch_layout.moc"
