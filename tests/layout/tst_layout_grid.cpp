#include "grid_bench.h"

#include "log/event_log.h"

#include <QFile>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>
#include <stdexcept>

namespace {
/// An item that cannot be read.
class UnreadableItem : public QTableWidgetItem
{
public:
    QVariant data(int role) const override
    {
        if (unreadable && role == Qt::DisplayRole)
            throw std::runtime_error("the item is gone");
        return QTableWidgetItem::data(role);
    }

    static inline bool unreadable = false;
};

QByteArray logText()
{
    QFile log(eventLogPath());
    return log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray();
}
} // namespace

/// The layout grid without a mouse: model, repaint, drops as notifications, keyboard.
class LayoutGridTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(openLog(), 1); }
    void cleanupTestCase() { closeLog(); }

    void theInitialLayoutIsTheTopRow()
    {
        const GridBench bench;
        QCOMPARE(bench.picture(), QStringLiteral("1234/..../..../...."));
        QCOMPARE(bench.model(), QStringLiteral("1@0,0 2@0,1 3@0,2 4@0,3"));
        QCOMPARE(bench.table.item(0, 0)->background(), QBrush(Qt::yellow));
        QCOMPARE(bench.table.item(0, 1)->background(), QBrush(Qt::green));
        QCOMPARE(bench.table.item(0, 2)->background(), QBrush(Qt::blue));
        QCOMPARE(bench.table.item(0, 3)->background(), QBrush(Qt::red));
        QVERIFY(!bench.grid.isRedrawing());
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

    void pressingADisplayArmsDraggingAndHighlightsItInItsColour()
    {
        GridBench bench;
        bench.grid.cellPressed(0, 1);
        QVERIFY(bench.table.dragEnabled());
        QCOMPARE(bench.table.dragDropMode(), QAbstractItemView::InternalMove);
        QVERIFY(bench.table.verticalHeader()->sectionsMovable());
        QCOMPARE(bench.table.selectionMode(), QAbstractItemView::ExtendedSelection);
        QVERIFY(bench.table.item(0, 1)->isSelected());
        QCOMPARE(bench.table.styleSheet(),
                 QStringLiteral("QTableWidget::item:selected { background-color: "
                                "rgba(0, 255, 0, 128); border: 5px solid black;} QTableWidget "
                                "{background-color: rgb(109, 109, 105); gridline-color: "
                                "rgb(159, 159, 159);}"));
    }

    void theLongestPressedStyleHas188Characters()
    {
        GridBench bench;
        bench.table.item(0, 0)->setBackground(QColor(100, 100, 100));
        bench.grid.cellPressed(0, 0);
        QCOMPARE(bench.table.styleSheet().size(), 188);
    }

    void pressingAnotherDisplaySelectsThatOneAlone()
    {
        GridBench bench;
        bench.grid.cellPressed(0, 1);
        bench.grid.cellPressed(0, 3);
        QCOMPARE(bench.table.selectedItems(), QList<QTableWidgetItem *>{bench.table.item(0, 3)});
        QVERIFY(bench.table.styleSheet().contains(QStringLiteral("rgba(255, 0, 0, 128)")));
    }

    void pressingAnEmptyCellDisarmsDraggingAndSelection()
    {
        GridBench bench;
        bench.grid.cellPressed(0, 1);
        const QString style = bench.table.styleSheet();
        bench.table.selectionModel()->select(bench.table.model()->index(2, 2),
                                             QItemSelectionModel::Select);
        bench.grid.cellPressed(2, 2);
        QVERIFY(!bench.table.dragEnabled());
        QCOMPARE(bench.table.dragDropMode(), QAbstractItemView::NoDragDrop);
        QVERIFY(!bench.table.verticalHeader()->sectionsMovable());
        QCOMPARE(bench.table.selectionMode(), QAbstractItemView::NoSelection);
        QVERIFY(!bench.table.selectionModel()->isSelected(bench.table.model()->index(2, 2)));
        QCOMPARE(bench.table.styleSheet(), style);
    }

    void bothOrdersOfNotificationAreOneDrop_data()
    {
        QTest::addColumn<bool>("sourceFirst");
        QTest::newRow("source first") << true;
        QTest::newRow("target first") << false;
    }

    void bothOrdersOfNotificationAreOneDrop()
    {
        QFETCH(bool, sourceFirst);
        GridBench bench;
        bench.grid.cellPressed(0, 1);
        if (sourceFirst)
            bench.moveSourceFirst({0, 1}, {2, 0});
        else
            bench.moveTargetFirst({0, 1}, {2, 0});
        QCOMPARE(bench.picture(), QStringLiteral("1.34/..../2.../...."));
        // in row-major order of the grid
        QCOMPARE(bench.model(), QStringLiteral("1@0,0 3@0,2 4@0,3 2@2,0"));
        QCOMPARE(bench.table.currentRow(), 2);
        QCOMPARE(bench.table.currentColumn(), 0);
        QVERIFY(bench.table.selectedItems().isEmpty());

        // the next drop starts from nought again
        bench.grid.cellPressed(0, 0);
        if (sourceFirst)
            bench.moveSourceFirst({0, 0}, {3, 3});
        else
            bench.moveTargetFirst({0, 0}, {3, 3});
        QCOMPARE(bench.picture(), QStringLiteral("..34/..../2.../...1"));
        QCOMPARE(bench.model(), QStringLiteral("3@0,2 4@0,3 2@2,0 1@3,3"));
    }

    void aDropOnAnotherDisplayIsUndone_data() { bothOrdersOfNotificationAreOneDrop_data(); }

    void aDropOnAnotherDisplayIsUndone()
    {
        QFETCH(bool, sourceFirst);
        GridBench bench;
        bench.grid.cellPressed(0, 1);
        if (sourceFirst)
            bench.moveSourceFirst({0, 1}, {0, 2});
        else
            bench.moveTargetFirst({0, 1}, {0, 2});
        QCOMPARE(bench.picture(), QStringLiteral("1234/..../..../...."));
        QCOMPARE(bench.model(), QStringLiteral("1@0,0 2@0,1 3@0,2 4@0,3"));
    }

    void fourItemsThatAreNotTheFourChannelsAreUndone()
    {
        GridBench bench;
        bench.grid.cellPressed(0, 0);
        // two displays dragged at once onto each other's neighbours
        bench.table.setItem(0, 1, bench.table.item(0, 0)->clone());
        bench.table.setItem(0, 2, bench.table.item(0, 0)->clone());
        QCOMPARE(bench.picture(), QStringLiteral("1234/..../..../...."));
        QCOMPARE(bench.model(), QStringLiteral("1@0,0 2@0,1 3@0,2 4@0,3"));
    }

    void aMoveThatWasCutShortDoesNotSpoilTheNext()
    {
        GridBench bench;
        bench.grid.cellPressed(0, 0);
        bench.table.item(0, 0)->setToolTip(QStringLiteral("one notification, no second"));
        bench.grid.cellPressed(0, 1);
        bench.moveSourceFirst({0, 1}, {1, 1});
        QCOMPARE(bench.picture(), QStringLiteral("1.34/.2../..../...."));
    }

    void anInactiveDisplayCanBeMovedAndStaysInactive()
    {
        GridBench bench;
        bench.grid.repaintActivePorts(0);
        bench.grid.cellPressed(0, 3);
        bench.moveSourceFirst({0, 3}, {1, 0});
        QCOMPARE(bench.picture(), QStringLiteral("123-./4-.../..../...."));
        QCOMPARE(bench.grid.layout().back().label, QStringLiteral("Channel 4"));
        QCOMPARE(bench.grid.layout().back().brush, QBrush(Qt::gray));
    }

    void aGridThatCannotBeReadIsLoggedAndDrawnAnew()
    {
        GridBench bench;
        bench.grid.cellPressed(0, 0);
        UnreadableItem::unreadable = true;
        bench.table.setItem(1, 1, new UnreadableItem);
        delete bench.table.takeItem(0, 0);
        UnreadableItem::unreadable = false;
        QCOMPARE(bench.picture(), QStringLiteral("1234/..../..../...."));
        QCOMPARE(bench.model(), QStringLiteral("1@0,0 2@0,1 3@0,2 4@0,3"));
        const QByteArray log = logText();
        const auto reason = log.indexOf("the item is gone   ");
        const auto error = log.indexOf("Topology setting error   ");
        QVERIFY(reason >= 0);
        QVERIFY(error > reason);
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
        QVERIFY(!bench.grid.isRedrawing());
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
        QVERIFY(!grid.isRedrawing());
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

    void controlAndAnArrowMoveTheDisplayInFocus_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("picture");
        QTest::newRow("down") << 0 << 1 << int(Qt::Key_Down)
                              << QStringLiteral("1.34/.2../..../....");
        QTest::newRow("up: the edge of the grid")
            << 0 << 1 << int(Qt::Key_Up) << QStringLiteral("1234/..../..../....");
        QTest::newRow("right: no free cell")
            << 0 << 1 << int(Qt::Key_Right) << QStringLiteral("1234/..../..../....");
        QTest::newRow("left: no free cell")
            << 0 << 3 << int(Qt::Key_Left) << QStringLiteral("1234/..../..../....");
    }

    void controlAndAnArrowMoveTheDisplayInFocus()
    {
        QFETCH(int, row);
        QFETCH(int, column);
        QFETCH(int, key);
        QFETCH(QString, picture);
        GridBench bench;
        bench.table.setCurrentCell(row, column);
        QTest::keyClick(&bench.table, Qt::Key(key), Qt::ControlModifier);
        QCOMPARE(bench.picture(), picture);
    }

    void theNextFreeCellLiesBehindOtherDisplays()
    {
        GridBench bench;
        bench.grid.place({{{0, 0}, {1, 0}, {2, 0}, {3, 3}}}, 2);
        bench.table.setCurrentCell(0, 0);
        QTest::keyClick(&bench.table, Qt::Key_Down, Qt::ControlModifier);
        QCOMPARE(bench.picture(), QStringLiteral("..../2.../3.../1..4"));
        // the focus went along
        QTest::keyClick(&bench.table, Qt::Key_Right, Qt::ControlModifier);
        QTest::keyClick(&bench.table, Qt::Key_Right, Qt::ControlModifier | Qt::KeypadModifier);
        QCOMPARE(bench.picture(), QStringLiteral("..../2.../3.../..14"));
        QTest::keyClick(&bench.table, Qt::Key_Up, Qt::ControlModifier);
        QCOMPARE(bench.picture(), QStringLiteral("..../2.../3.1./...4"));
        QTest::keyClick(&bench.table, Qt::Key_Left, Qt::ControlModifier);
        QCOMPARE(bench.picture(), QStringLiteral("..../2.../31../...4"));
        QCOMPARE(bench.model(), QStringLiteral("2@1,0 3@2,0 1@2,1 4@3,3"));
    }

    void otherKeysMoveTheFocusAndNoDisplay()
    {
        GridBench bench;
        bench.table.setCurrentCell(0, 1);
        QTest::keyClick(&bench.table, Qt::Key_Down);
        QCOMPARE(bench.table.currentRow(), 1);
        QTest::keyClick(&bench.table, Qt::Key_Right, Qt::ControlModifier); // an empty cell
        QCOMPARE(bench.picture(), QStringLiteral("1234/..../..../...."));
        bench.table.setCurrentCell(0, 1);
        QTest::keyClick(&bench.table, Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(bench.picture(), QStringLiteral("1234/..../..../...."));
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
