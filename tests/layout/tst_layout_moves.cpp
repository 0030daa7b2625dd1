#include "grid_bench.h"

#include "log/event_log.h"

#include <QFile>
#include <QMouseEvent>
#include <QTest>
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

/// Displays pressed, dropped and moved by keyboard, without a mouse: drops come as notifications.
class LayoutMovesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(openLog(), 1); }
    void cleanupTestCase() { closeLog(); }

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

    void aSweepFromAnEmptyCellSelectsNothing()
    {
        GridBench bench;
        bench.table.show();
        mouse(bench, QEvent::MouseButtonPress, {2, 1});
        mouse(bench, QEvent::MouseMove, {0, 1});
        mouse(bench, QEvent::MouseMove, {0, 2});
        QVERIFY(bench.table.selectionModel()->selectedIndexes().isEmpty());
        mouse(bench, QEvent::MouseButtonRelease, {0, 2});
        QVERIFY(bench.table.selectionModel()->selectedIndexes().isEmpty());
        QCOMPARE(bench.picture(), QStringLiteral("1234/..../..../...."));
    }

    void aPressOnADisplayAllowsSelectingAgain()
    {
        GridBench bench;
        bench.grid.cellPressed(2, 2);
        bench.table.selectAll();
        QVERIFY(bench.table.selectedItems().isEmpty());
        bench.grid.cellPressed(0, 1);
        bench.table.selectAll();
        QCOMPARE(bench.table.selectedItems().size(), 4);
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
        QCOMPARE(bench.picture(), QStringLiteral("..../2.../3.../.1.4"));
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

private:
    /// The left button goes down, is moved with or comes up over the centre of a cell.
    static void mouse(GridBench &bench, QEvent::Type type, GridPosition cell)
    {
        QWidget *viewport = bench.table.viewport();
        const QPointF at =
            bench.table.visualRect(bench.table.model()->index(cell.row, cell.column)).center();
        QMouseEvent event(type, at, viewport->mapToGlobal(at),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &event);
    }
};

QTEST_MAIN(LayoutMovesTest)
#include "tst_layout_moves.moc"
