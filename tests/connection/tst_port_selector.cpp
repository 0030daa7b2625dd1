#include "connection/port_selector.h"

#include <QHelpEvent>
#include <QSignalBlocker>
#include <QTest>
#include <QToolTip>

/// What the closed port list shows.
class PortSelectorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aShortNameStandsWhole()
    {
        PortSelector selector;
        selector.resize(200, 30);
        selector.addItem(QStringLiteral("ttyUSB0"));
        QCOMPARE(selector.shownText(), QStringLiteral("ttyUSB0"));
    }

    void aLongPathShowsItsEnd()
    {
        const QString path = QStringLiteral("/home/somebody/projects/pelora/build/demo/switch");
        PortSelector selector;
        selector.resize(200, 30);
        selector.addItem(path);
        QVERIFY(selector.shownText().startsWith(QChar(0x2026)));
        QVERIFY(selector.shownText().endsWith(QStringLiteral("/switch")));
        QVERIFY(selector.fontMetrics().horizontalAdvance(selector.shownText()) < 200);
        QCOMPARE(selector.currentText(), path);
    }

    void theToolTipHasTheWholePath()
    {
        const QString path = QStringLiteral("/home/somebody/projects/pelora/build/demo/switch");
        PortSelector selector;
        selector.resize(200, 30);
        {
            const QSignalBlocker blocker(selector);
            selector.addItem(path);
        }
        selector.show();
        QHelpEvent asked(QEvent::ToolTip, QPoint(5, 5), selector.mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&selector, &asked);
        QTRY_COMPARE(QToolTip::text(), path);
    }

    void itsTextIsPaintedInsideTheField()
    {
        PortSelector selector;
        selector.resize(200, 30);
        selector.addItem(QStringLiteral("A"));
        const QImage one = selector.grab().toImage();
        selector.setItemText(0, QStringLiteral("B"));
        QVERIFY(selector.grab().toImage() != one);
    }

    void anEmptyListShowsNothing()
    {
        PortSelector selector;
        selector.resize(200, 30);
        selector.addItem(QStringLiteral("ttyUSB0"));
        selector.clear();
        QCOMPARE(selector.shownText(), QString());
    }
};

QTEST_MAIN(PortSelectorTest)
#include "tst_port_selector.moc"
