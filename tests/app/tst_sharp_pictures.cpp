#include "support/serial_window.h"

/// The pictures on a screen with two pixels to the program's pixel.
class SharpPicturesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(qApp->devicePixelRatio(), 2.0); }

    void eachIsThereInTwiceTheSize_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QSize>("size");
        QTest::newRow("icon") << QStringLiteral("Pelora_app_icon.png") << QSize(512, 512);
        QTest::newRow("refresh") << QStringLiteral("refresh.png") << QSize(200, 200);
        QTest::newRow("logo") << QStringLiteral("rsz_norvik_image.png") << QSize(368, 96);
    }

    void eachIsThereInTwiceTheSize()
    {
        QFETCH(QString, name);
        QFETCH(QSize, size);
        const QString path = QStringLiteral(":/img/logos/") + name;
        const QPixmap picture = QIcon(path).pixmap(size / 2);
        QCOMPARE(picture.size(), size);
        QCOMPARE(picture.devicePixelRatio(), 2.0);
        // Drawn in that size, not blown up to it.
        const QImage small(path);
        const QImage large = picture.toImage();
        QVERIFY(small.scaled(size).convertToFormat(large.format()) != large);
    }

    void theLogoTakesTheSameRoomInTheWindow()
    {
        SerialWindow s;
        s.start();
        const QPixmap logo = s.label("label_52")->pixmap(Qt::ReturnByValue);
        QCOMPARE(logo.size(), QSize(368, 96));
        QCOMPARE(logo.deviceIndependentSize(), QSizeF(184, 48));
    }

    void onASmallScreenItIsSmallerAndAsSharp()
    {
        SerialWindow s;
        WindowSettings settings = SerialWindow::quick();
        settings.scale = 0.75;
        s.start(settings);
        const QPixmap logo = s.label("label_52")->pixmap(Qt::ReturnByValue);
        QCOMPARE(logo.size(), QSize(276, 72));
        QCOMPARE(logo.deviceIndependentSize(), QSizeF(138, 36));
    }
};

QTEST_MAIN(SharpPicturesTest)
#include "tst_sharp_pictures.moc"
