#include "grid_bench.h"

#include "log/event_log.h"

#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

/// Drags displays with a real pointer on a virtual display: the pointer is moved from outside the
/// program, so that Qt's own drag and drop runs from the press to the drop.
class LayoutDragTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(openLog(), 1); }
    void cleanupTestCase() { closeLog(); }

    void init()
    {
        bench_ = std::make_unique<GridBench>();
        bench_->table.setWindowFlag(Qt::FramelessWindowHint);
        bench_->table.move(100, 100);
        bench_->table.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bench_->table));
        QTRY_COMPARE(bench_->table.mapToGlobal(QPoint(0, 0)), QPoint(100, 100));
    }
    void cleanup() { bench_.reset(); }

    void aDisplayIsDraggedOntoAnEmptyCell()
    {
        QSignalSpy changes(&bench_->table, &QTableWidget::cellChanged);
        drag({0, 1}, {2, 2});
        QTRY_COMPARE(bench_->picture(), QStringLiteral("1.34/..../..2./...."));
        QCOMPARE(bench_->model(), QStringLiteral("1@0,0 3@0,2 4@0,3 2@2,2"));
        QVERIFY(!bench_->table.selectionModel()->hasSelection());
        QTRY_COMPARE(bench_->table.currentRow(), 2);
        QCOMPARE(bench_->table.currentColumn(), 2);
        QCOMPARE(changes.first(), (QVariantList{0, 1})); // Qt takes the source's item first
    }

    void dragsFollowOneAnother()
    {
        drag({0, 0}, {3, 0});
        QTRY_COMPARE(bench_->picture(), QStringLiteral(".234/..../..../1..."));
        drag({3, 0}, {3, 1});
        QTRY_COMPARE(bench_->picture(), QStringLiteral(".234/..../..../.1.."));
        drag({0, 3}, {0, 0});
        QTRY_COMPARE(bench_->picture(), QStringLiteral("423./..../..../.1.."));
        QCOMPARE(bench_->model(), QStringLiteral("4@0,0 2@0,1 3@0,2 1@3,1"));
    }

    void aDropOnAnotherDisplayIsUndone()
    {
        const qsizetype before = dropsUndone();
        QSignalSpy changes(&bench_->table, &QTableWidget::cellChanged);
        drag({0, 1}, {0, 2});
        QTRY_VERIFY(changes.size() >= 2); // the drop has come
        QCOMPARE(bench_->picture(), QStringLiteral("1234/..../..../...."));
        QCOMPARE(bench_->model(), QStringLiteral("1@0,0 2@0,1 3@0,2 4@0,3"));
        QCOMPARE(dropsUndone(), before + 1);
        drag({0, 1}, {1, 1});
        QTRY_COMPARE(bench_->picture(), QStringLiteral("1.34/.2../..../...."));
        QCOMPARE(dropsUndone(), before + 1);
        QVERIFY(bench_->table.toolTip().contains(
            QStringLiteral("One that is dropped on another goes back")));
    }

    void aDropOnItsOwnCellChangesNothing()
    {
        const qsizetype before = dropsUndone();
        drag({0, 1}, {0, 1});
        drag({0, 0}, {1, 0});
        QTRY_COMPARE(bench_->picture(), QStringLiteral(".234/1.../..../...."));
        QCOMPARE(dropsUndone(), before);
    }

    void aDropOutsideTheGridChangesNothing()
    {
        dragTo({0, 1}, QPoint(50, 50));
        QCOMPARE(bench_->picture(), QStringLiteral("1234/..../..../...."));
        drag({0, 1}, {1, 1});
        QTRY_COMPARE(bench_->picture(), QStringLiteral("1.34/.2../..../...."));
    }

    void anEmptyCellCannotBeDragged()
    {
        drag({1, 1}, {2, 2});
        QVERIFY(!bench_->table.dragEnabled());
        QCOMPARE(bench_->picture(), QStringLiteral("1234/..../..../...."));
        drag({0, 3}, {1, 3}); // a press on a display arms it again
        QTRY_COMPARE(bench_->picture(), QStringLiteral("123./...4/..../...."));
    }

    void anInactiveDisplayIsDragged()
    {
        bench_->grid.repaintActivePorts(0);
        drag({0, 2}, {1, 1});
        QTRY_COMPARE(bench_->picture(), QStringLiteral("12.4-/.3-../..../...."));
    }

    void aSelectionOfSeveralStillDragsOne()
    {
        bench_->grid.cellPressed(0, 0);
        bench_->table.selectAll();
        QCOMPARE(bench_->table.selectedItems().size(), 4);
        drag({0, 1}, {2, 1});
        QTRY_COMPARE(bench_->picture(), QStringLiteral("1.34/..../.2../...."));
    }

private:
    /// How often the log tells of a drop that was undone.
    static qsizetype dropsUndone()
    {
        QFile log(eventLogPath());
        return log.open(QIODevice::ReadOnly)
                   ? log.readAll().count("A display was dropped on another one and goes back   ")
                   : -1;
    }

    QPoint centreOf(GridPosition cell) const
    {
        const QModelIndex index = bench_->table.model()->index(cell.row, cell.column);
        return bench_->table.viewport()->mapToGlobal(bench_->table.visualRect(index).center());
    }

    void drag(GridPosition from, GridPosition to) { dragTo(from, centreOf(to)); }

    /// Presses on the centre of `from`, moves to `end` (screen coordinates) in steps, lets go.
    void dragTo(GridPosition from, QPoint end)
    {
        const QPoint start = centreOf(from);
        QStringList script = {QStringLiteral("mousemove"), QString::number(start.x()),
                              QString::number(start.y()),  QStringLiteral("sleep"),
                              QStringLiteral("0.05"),      QStringLiteral("mousedown"),
                              QStringLiteral("1")};
        constexpr int steps = 8;
        for (int step = 1; step <= steps; ++step) {
            // by way of a bow, so that a drag back onto its own cell is one too
            const QPoint at = start + (end - start) * step / steps +
                              QPoint(step % 2 == 0 || step == steps ? 0 : 20, 0);
            script += {QStringLiteral("sleep"), QStringLiteral("0.02"), QStringLiteral("mousemove"),
                       QString::number(at.x()), QString::number(at.y())};
        }
        script += {QStringLiteral("sleep"), QStringLiteral("0.05"), QStringLiteral("mouseup"),
                   QStringLiteral("1")};
        QProcess pointer;
        QSignalSpy finished(&pointer, &QProcess::finished);
        pointer.start(QStringLiteral("xdotool"), script);
        QVERIFY2(pointer.waitForStarted(), "xdotool is missing: run scripts/setup");
        QVERIFY(finished.wait(10000) || pointer.state() == QProcess::NotRunning);
        QCOMPARE(pointer.exitCode(), 0);
        QTRY_COMPARE(QApplication::mouseButtons(), Qt::NoButton);
    }

    std::unique_ptr<GridBench> bench_;
};

QTEST_MAIN(LayoutDragTest)
#include "tst_layout_drag.moc"
