#include "grid_bench.h"

#include <QLineEdit>
#include <QRegularExpression>
#include <QTest>
#include <QVBoxLayout>

/// The layout grid at rest: what it shows of the displays, which are active, how it is reached.
class LayoutGridTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theInitialLayoutIsTheTopRow()
    {
        GridBench bench;
        QCOMPARE(bench.picture(), QStringLiteral("1234/..../..../...."));
        QCOMPARE(bench.model(), QStringLiteral("1@0,0 2@0,1 3@0,2 4@0,3"));
        QCOMPARE(bench.table.item(0, 0)->background(), QBrush(Qt::yellow));
        QCOMPARE(bench.table.item(0, 1)->background(), QBrush(Qt::green));
        QCOMPARE(bench.table.item(0, 2)->background(), QBrush(Qt::blue));
        QCOMPARE(bench.table.item(0, 3)->background(), QBrush(Qt::red));
        QVERIFY(bench.heedsMoves());
    }

    void aDisplayIsCentredBoldArial()
    {
        const GridBench bench;
        const QTableWidgetItem *item = bench.table.item(0, 1);
        QCOMPARE(item->text(), QStringLiteral("Channel 2"));
        QCOMPARE(item->textAlignment(), 132);
        QCOMPARE(item->font().family(), QStringLiteral("Arial"));
        QCOMPARE(item->font().pointSize(), 18);
        QCOMPARE(int(item->font().weight()), 700);
        QCOMPARE(item->type(), 0);
    }

    void aPaintedDisplayLeavesThePainterAsItWas()
    {
        GridBench bench;
        QTest::failOnWarning(QRegularExpression(QStringLiteral("QPainter")));
        QVERIFY(!bench.table.grab().isNull());
    }

    void activePorts_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("picture");
        QTest::newRow("Ports 1 and 2") << 0 << QStringLiteral("123-4-/..../..../....");
        QTest::newRow("Ports 1, 2, and 3") << 1 << QStringLiteral("1234-/..../..../....");
        QTest::newRow("Ports 1, 2, 3, and 4") << 2 << QStringLiteral("1234/..../..../....");
        QTest::newRow("one more, as after a read-back")
            << 3 << QStringLiteral("1234/..../..../....");
    }

    void activePorts()
    {
        QFETCH(int, mode);
        QFETCH(QString, picture);
        GridBench bench;
        bench.grid.repaintActivePorts(mode);
        QCOMPARE(bench.picture(), picture);
        QVERIFY(bench.heedsMoves());
    }

    void inactiveDisplaysAreGreyWithASecondLineAndComeBack()
    {
        GridBench bench;
        bench.grid.repaintActivePorts(0);
        QCOMPARE(bench.table.item(0, 2)->text(), QStringLiteral("Channel 3\nINACTIVE"));
        QCOMPARE(bench.table.item(0, 3)->text(), QStringLiteral("Channel 4\nINACTIVE"));
        QCOMPARE(bench.table.item(0, 2)->background(), QBrush(Qt::gray));
        QCOMPARE(bench.table.item(0, 3)->background(), QBrush(Qt::gray));
        QCOMPARE(bench.grid.layout()[2].label, QStringLiteral("Channel 3"));

        bench.grid.repaintActivePorts(0); // greyed once, however often it is asked for
        QCOMPARE(bench.table.item(0, 3)->text(), QStringLiteral("Channel 4\nINACTIVE"));

        bench.grid.repaintActivePorts(2);
        QCOMPARE(bench.table.item(0, 2)->text(), QStringLiteral("Channel 3"));
        QCOMPARE(bench.table.item(0, 3)->text(), QStringLiteral("Channel 4"));
        QCOMPARE(bench.table.item(0, 2)->background(), QBrush(Qt::blue));
        QCOMPARE(bench.table.item(0, 3)->background(), QBrush(Qt::red));
    }

    void channelsOneAndTwoAreNeverGreyed()
    {
        GridBench bench;
        bench.grid.repaintActivePorts(-2);
        QCOMPARE(bench.picture(), QStringLiteral("123-4-/..../..../...."));
    }

    void afterARepaintTheLayoutIsInTheOrderOfItsChannels()
    {
        GridBench bench;
        bench.grid.cellPressed(0, 0);
        bench.moveSourceFirst({0, 0}, {3, 3});
        QCOMPARE(bench.model(), QStringLiteral("2@0,1 3@0,2 4@0,3 1@3,3"));
        bench.grid.repaintActivePorts(1);
        QCOMPARE(bench.model(), QStringLiteral("1@3,3 2@0,1 3@0,2 4@0,3-"));
    }

    void aRepaintWithoutDisplaysDoesNothing()
    {
        QTableWidget table(4, 4);
        LayoutGrid grid(table);
        grid.repaintActivePorts(0);
        QVERIFY(grid.layout().empty());
        grid.showInitialLayout();
        table.setItem(3, 3, table.takeItem(0, 0));
        grid.cellChanged(0, 0);
        grid.cellChanged(3, 3);
        QCOMPARE(grid.layout().back().row, 3); // a move is heeded
    }

    void placedDisplaysReplaceTheLayout()
    {
        GridBench bench;
        bench.grid.place({{{1, 0}, {1, 1}, {1, 2}, {1, 3}}}, 1);
        QCOMPARE(bench.picture(), QStringLiteral("..../1234-/..../...."));
        QCOMPARE(bench.model(), QStringLiteral("1@1,0 2@1,1 3@1,2 4@1,3-"));
    }

    void displaysOutsideTheGridAreKeptButNotShown()
    {
        GridBench bench;
        bench.grid.place({{{0, -1}, {4, 0}, {24, 2}, {-1, -1}}}, 0);
        QCOMPARE(bench.picture(), QStringLiteral("..../..../..../...."));
        QCOMPARE(bench.model(), QStringLiteral("1@0,-1 2@4,0 3@24,2- 4@-1,-1-"));
        bench.grid.repaintActivePorts(2);
        QCOMPARE(bench.model(), QStringLiteral("1@0,-1 2@4,0 3@24,2 4@-1,-1"));
        bench.grid.cellPressed(0, 0);
        QVERIFY(!bench.table.dragEnabled());
    }

    void aColumnOutsideTheGridDoesNotSpillIntoTheNextRow()
    {
        GridBench bench;
        bench.grid.place({{{0, 0}, {0, 1}, {0, 5}, {2, -1}}}, 2);
        QCOMPARE(bench.picture(), QStringLiteral("12../..../..../...."));
    }

    void twoDisplaysInOneCellDoNotCrash()
    {
        GridBench bench;
        bench.grid.place({{{0, 0}, {0, 0}, {0, 0}, {0, 1}}}, 0);
        QCOMPARE(bench.grid.layout().size(), std::size_t(4));
        bench.grid.repaintActivePorts(2);
        bench.grid.cellPressed(0, 1);
        bench.moveSourceFirst({0, 1}, {1, 1});
        QCOMPARE(bench.grid.layout().size(), std::size_t(4));
    }

    void everyDisplayTellsItsPlaceToAssistiveTools()
    {
        GridBench bench;
        const auto told = [&](int row, int column) {
            return bench.table.item(row, column)->data(Qt::AccessibleTextRole).toString();
        };
        QCOMPARE(told(0, 2), QStringLiteral("Channel 3, row 1, column 3"));
        bench.grid.repaintActivePorts(0);
        QCOMPARE(told(0, 2), QStringLiteral("Channel 3, row 1, column 3, inactive"));
        QCOMPARE(told(0, 0), QStringLiteral("Channel 1, row 1, column 1"));
        bench.grid.cellPressed(0, 2);
        bench.moveSourceFirst({0, 2}, {3, 1});
        QCOMPARE(told(3, 1), QStringLiteral("Channel 3, row 4, column 2, inactive"));
        bench.grid.repaintActivePorts(2);
        QCOMPARE(told(3, 1), QStringLiteral("Channel 3, row 4, column 2"));
    }

    void tabReachesTheGridAndLeavesIt()
    {
        QWidget window;
        QVBoxLayout column(&window);
        QLineEdit before;
        QTableWidget table(4, 4);
        QLineEdit behind;
        column.addWidget(&before);
        column.addWidget(&table);
        column.addWidget(&behind);
        LayoutGrid grid(table);
        grid.showInitialLayout();
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        before.setFocus();
        QTest::keyClick(&before, Qt::Key_Tab);
        QTRY_VERIFY(table.hasFocus());
        QTest::keyClick(&table, Qt::Key_Tab);
        QTRY_VERIFY(behind.hasFocus());
    }
};

QTEST_MAIN(LayoutGridTest)
#include "tst_layout_grid.moc"
