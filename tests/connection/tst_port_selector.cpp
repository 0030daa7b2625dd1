#include "connection/port_selector.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QSignalBlocker>
#include <QTest>
#include <QTextDocumentFragment>
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
        askForToolTip(selector);
        QTRY_COMPARE(QToolTip::text(), path);
    }

    void anEntrysToolTipSaysWhatIsKnownOfThePort()
    {
        PortSelector selector;
        selector.addItems({QStringLiteral("COM3"), QStringLiteral("COM5"), QStringLiteral("COM7")});
        selector.setNotes({{QStringLiteral("COM5"), QStringLiteral("USB Serial Port, FTDI")},
                           {QStringLiteral("COM9"), QStringLiteral("another one's")}});
        QVERIFY(selector.itemData(0, Qt::ToolTipRole).isNull());
        QCOMPARE(selector.itemData(1, Qt::ToolTipRole).toString(),
                 QStringLiteral("COM5\nUSB Serial Port, FTDI"));
        QVERIFY(selector.itemData(2, Qt::ToolTipRole).isNull());
        QCOMPARE(selector.itemText(1), QStringLiteral("COM5"));
    }

    void theListShowsIt()
    {
        PortSelector selector;
        selector.addItems({QStringLiteral("COM3"), QStringLiteral("COM5")});
        selector.setNotes({{QStringLiteral("COM5"), QStringLiteral("USB Serial Port, FTDI")}});
        selector.show();
        selector.showPopup();
        const QAbstractItemView &list = *selector.view();
        const QPoint onEntry = list.visualRect(list.model()->index(1, 0)).center();
        QHelpEvent asked(QEvent::ToolTip, onEntry, list.viewport()->mapToGlobal(onEntry));
        QCoreApplication::sendEvent(list.viewport(), &asked);
        QTRY_COMPARE(QToolTip::text(), QStringLiteral("COM5\nUSB Serial Port, FTDI"));
    }

    void theClosedFieldsToolTipSaysItOfTheCurrentOne()
    {
        PortSelector selector;
        selector.addItems({QStringLiteral("COM3"), QStringLiteral("COM5")});
        selector.setNotes({{QStringLiteral("COM5"), QStringLiteral("USB Serial Port, FTDI")}});
        selector.show();
        selector.setCurrentIndex(1);
        askForToolTip(selector);
        QTRY_COMPARE(QToolTip::text(), QStringLiteral("COM5\nUSB Serial Port, FTDI"));
        selector.setCurrentIndex(0);
        askForToolTip(selector);
        QTRY_COMPARE(QToolTip::text(), QStringLiteral("COM3"));
    }

    void markupIsShownAsItStands()
    {
        PortSelector selector;
        const QString name = QStringLiteral("<b>COM3</b>");
        const QString note = QStringLiteral("<img src='/x'>, <b>A & B</b>");
        selector.addItems({name, QStringLiteral("COM5"), QStringLiteral("<i>COM7</i>")});
        selector.setNotes({{name, note}, {QStringLiteral("COM5"), note}});
        QCOMPARE(shown(selector.itemData(0, Qt::ToolTipRole).toString()),
                 name + QLatin1Char('\n') + note);
        QCOMPARE(shown(selector.itemData(1, Qt::ToolTipRole).toString()),
                 QStringLiteral("COM5\n") + note);
        selector.show();
        selector.setCurrentIndex(2);
        askForToolTip(selector);
        QTRY_COMPARE(shown(QToolTip::text()), QStringLiteral("<i>COM7</i>"));
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

private:
    /// What a tool tip with this text shows.
    static QString shown(const QString &text)
    {
        if (!Qt::mightBeRichText(text))
            return text;
        return QTextDocumentFragment::fromHtml(text).toPlainText().replace(QChar(0x2028),
                                                                           QLatin1Char('\n'));
    }

    static void askForToolTip(PortSelector &selector)
    {
        QHelpEvent asked(QEvent::ToolTip, QPoint(5, 5), selector.mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&selector, &asked);
    }
};

QTEST_MAIN(PortSelectorTest)
#include "tst_port_selector.moc"
