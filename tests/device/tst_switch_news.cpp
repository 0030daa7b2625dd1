#include "device/switch_news.h"

#include <QTest>

class SwitchNewsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLineTellsWhoHasControl_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("km"); // 0: not told
        QTest::addColumn<int>("usb");
        QTest::newRow("echo of KM control") << QByteArray("**C3") << 3 << 0;
        QTest::newRow("echo of USB control") << QByteArray("**U2\r") << 0 << 2;
        QTest::newRow("echo of both") << QByteArray("**M4") << 4 << 4;
        QTest::newRow("KM control") << QByteArray("Current KM Control: 1") << 1 << 0;
        QTest::newRow("USB control, colon") << QByteArray("Current USB Control: 4 ") << 0 << 4;
        QTest::newRow("USB control, no colon") << QByteArray("Current USB Control 2") << 0 << 2;
        QTest::newRow("echo of a resolution") << QByteArray("**CE 1 3") << 0 << 0;
        QTest::newRow("no such port") << QByteArray("**C5") << 0 << 0;
        QTest::newRow("port 0") << QByteArray("**M0") << 0 << 0;
        QTest::newRow("two digits") << QByteArray("**C12") << 0 << 0;
        QTest::newRow("no port") << QByteArray("Current KM Control: ") << 0 << 0;
        QTest::newRow("in the middle of a line") << QByteArray("says **C3") << 0 << 0;
        QTest::newRow("other text") << QByteArray("Beep on") << 0 << 0;
        QTest::newRow("nothing") << QByteArray() << 0 << 0;
    }

    void aLineTellsWhoHasControl()
    {
        QFETCH(QByteArray, line);
        QFETCH(int, km);
        QFETCH(int, usb);
        const ControlNews news = controlNews(line.toStdString());
        QCOMPARE(news.kmPort.value_or(0), km);
        QCOMPARE(news.usbPort.value_or(0), usb);
    }
};

QTEST_GUILESS_MAIN(SwitchNewsTest)
#include "tst_switch_news.moc"
