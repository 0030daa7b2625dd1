#include "log/one_line.h"

#include <QTest>

/// What a device or a file says does nothing to whoever shows it.
class OneLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatWouldBeObeyedIsShown_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("plain") << QByteArray("Größe \\ 4K") << QByteArray("Größe \\ 4K");
        QTest::newRow("lines") << QByteArray("a\r\nb\tc") << QByteArray("a\\r\\nb\\tc");
        QTest::newRow("escape sequence") << QByteArray("\x1b[2J") << QByteArray("\\x1b[2J");
        QTest::newRow("delete") << QByteArray("\x7f") << QByteArray("\\x7f");
        QTest::newRow("eight-bit escape") << QByteArray("\xc2\x9b") << QByteArray("\\u009b");
        QTest::newRow("separators")
            << QByteArray("\xe2\x80\xa8\xe2\x80\xa9") << QByteArray("\\u2028\\u2029");
        QTest::newRow("right-to-left override") << QByteArray("a\xe2\x80\xae"
                                                              "b")
                                                << QByteArray("a\\u202eb");
        QTest::newRow("isolate") << QByteArray("\xe2\x81\xa6") << QByteArray("\\u2066");
        QTest::newRow("no UTF-8") << QByteArray("\xff\xc3") << QByteArray("\\xff\\xc3");
        QTest::newRow("too long a form") << QByteArray("\xc0\x9b") << QByteArray("\\xc0\\x9b");
        QTest::newRow("a form of five bytes, which there is not")
            << QByteArray("\xf8\x88\x80\x80\x80") << QByteArray("\\xf8\\x88\\x80\\x80\\x80");
        QTest::newRow("NUL") << QByteArray("a\0b", 3) << QByteArray("a\\x00b");
    }

    void whatWouldBeObeyedIsShown()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, line);
        QCOMPARE(QByteArray::fromStdString(asOneLine(text.toStdString())), line);
    }
};

QTEST_GUILESS_MAIN(OneLineTest)
#include "tst_one_line.moc"
