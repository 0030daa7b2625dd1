#include "app/screen_fit.h"

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <memory>

namespace {
constexpr QSize window(1305, 693);

/// An X display of `size` pixels, of its own.
class VirtualScreen
{
public:
    explicit VirtualScreen(QSize size)
    {
        server_.start(QStringLiteral("Xvfb"),
                      {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                       QStringLiteral("0"),
                       QStringLiteral("%1x%2x24").arg(size.width()).arg(size.height()),
                       QStringLiteral("-nolisten"), QStringLiteral("tcp"), QStringLiteral("-br"),
                       QStringLiteral("-noreset")});
        (void)server_.waitForReadyRead(20000);
        name_ = QLatin1Char(':') + QString::fromLatin1(server_.readLine()).trimmed();
    }
    ~VirtualScreen()
    {
        server_.terminate();
        server_.waitForFinished(5000);
    }
    Q_DISABLE_COPY_MOVE(VirtualScreen)

    const QString &name() const { return name_; }

private:
    QProcess server_;
    QString name_;
};

bool isDark(const QImage &picture, QRect area)
{
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (picture.pixelColor(x, y) != QColor(Qt::black))
                return false;
        }
    }
    return true;
}

/// The part of `picture` that is not the black of an empty screen, which begins at the top left.
QSize usedPart(const QImage &picture)
{
    QSize used;
    for (int x = 0; x < picture.width(); ++x) {
        if (!isDark(picture, {x, 0, 1, picture.height()}))
            used.setWidth(x + 1);
    }
    for (int y = 0; y < picture.height(); ++y) {
        if (!isDark(picture, {0, y, picture.width(), 1}))
            used.setHeight(y + 1);
    }
    return used;
}
} // namespace

/// A screen that the window does not fit.
class ScreenFitTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aWindowThatFitsStaysAsItIs_data()
    {
        QTest::addColumn<QSize>("available");
        QTest::addColumn<double>("scale");
        QTest::newRow("Full HD") << QSize(1920, 1040) << 1.0;
        QTest::newRow("to the pixel") << QSize(1307, 725) << 1.0;
        QTest::newRow("4K at 200 %") << QSize(1920, 1040) << 2.0;
        QTest::newRow("no screen") << QSize() << 1.0;
        QTest::newRow("a screen of nothing but frame") << QSize(2, 32) << 1.0;
        QTest::newRow("no scale") << QSize(1280, 720) << 0.0;
    }

    void aWindowThatFitsStaysAsItIs()
    {
        QFETCH(QSize, available);
        QFETCH(double, scale);
        QCOMPARE(scaleToFit(window, {available, scale}, QSize(2, 32)), 1.0);
    }

    void oneThatDoesNotIsMadeSmaller_data()
    {
        QTest::addColumn<QSize>("available");
        QTest::addColumn<double>("scale");
        QTest::addColumn<double>("least");
        QTest::newRow("a pixel too narrow") << QSize(1306, 725) << 1.0 << 0.998;
        QTest::newRow("a pixel too low") << QSize(1307, 724) << 1.0 << 0.998;
        QTest::newRow("1366 x 768, a high task bar") << QSize(1366, 708) << 1.0 << 0.974;
        QTest::newRow("1280 x 720") << QSize(1280, 680) << 1.0 << 0.934;
        QTest::newRow("1024 x 600") << QSize(1024, 560) << 1.0 << 0.760;
        QTest::newRow("1366 x 768 at 125 %") << QSize(1092, 574) << 1.25 << 0.777;
        QTest::newRow("Full HD at 150 %") << QSize(1280, 680) << 1.5 << 0.934;
        QTest::newRow("where an edge would end in a pixel") << QSize(1280, 563) << 1.75 << 0.760;
        QTest::newRow("Full HD at 175 %") << QSize(1097, 577) << 1.75 << 0.782;
        QTest::newRow("4K at 350 %") << QSize(1097, 577) << 3.5 << 0.782;
        QTest::newRow("upright") << QSize(600, 1024) << 1.0 << 0.457;
    }

    void oneThatDoesNotIsMadeSmaller()
    {
        QFETCH(QSize, available);
        QFETCH(double, scale);
        QFETCH(double, least);
        const double factor = scaleToFit(window, {available, scale}, QSize(2, 32));
        QVERIFY2(factor >= least && factor < 1, qPrintable(QString::number(factor)));
        const QSize size = window * factor;
        QVERIFY(size.width() <= available.width() - 2);
        QVERIFY(size.height() <= available.height() - 32);
        // The window gets whole pixels. With fewer than what is drawn needs, an edge would be cut.
        QVERIFY(std::round(size.width() * scale) > size.width() * scale - 0.001);
        QVERIFY(std::round(size.height() * scale) > size.height() * scale - 0.001);
    }

    void theProgramFitsOnTheScreen_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<QSize>("most");
        QTest::addColumn<int>("page");
        for (const int page : {0, 1, 2}) {
            QTest::addRow("1280 x 720, page %d", page)
                << QSize(1280, 720) << QSize(1272, 678) << page;
            QTest::addRow("1024 x 600, page %d", page)
                << QSize(1024, 600) << QSize(1016, 558) << page;
        }
    }

    /// With room for the frame, and no smaller than that asks for.
    void theProgramFitsOnTheScreen()
    {
        QFETCH(QSize, screen);
        QFETCH(QSize, most);
        QFETCH(int, page);
        const QSize used = usedPart(pictureOf(screen, page));
        QVERIFY2(used.width() <= most.width() && used.height() <= most.height(),
                 qPrintable(QStringLiteral("%1 x %2").arg(used.width()).arg(used.height())));
        QVERIFY(used.width() >= most.width() - 2 || used.height() >= most.height() - 2);
    }

    void onALargeScreenItHasItsOwnSize()
    {
        QCOMPARE(usedPart(pictureOf(QSize(1600, 1000))), window);
    }

    void soItDoesOnFullHdAt150Percent()
    {
        const QSize used =
            usedPart(pictureOf(QSize(1920, 1080), 0, "QT_SCREEN_SCALE_FACTORS", "1.5"));
        QVERIFY(used.width() <= 1908 && used.height() <= 1017); // room for the frame at 150 %
        QVERIFY(used.height() >= 1013);
    }

    void theUsersScaleWins()
    {
        const auto usedAt = [this](const char *scale, QSize screen) {
            return usedPart(pictureOf(screen, 0, "QT_SCALE_FACTOR", scale));
        };
        QCOMPARE(usedAt("1", QSize(1024, 600)), QSize(1024, 600));
        QCOMPARE(usedAt("1.2", QSize(1600, 1000)), QSize(1566, 832));
    }

private:
    /// What the screen shows when the program has started on it. `PELORA_KEEP_PICTURES` names a
    /// folder where it stays, to be looked at.
    QImage pictureOf(QSize screen, int page = 0, const char *variable = "", const char *value = "")
    {
        const VirtualScreen display(screen);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), display.name());
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("disabled:"));
        environment.remove(QStringLiteral("QT_SCALE_FACTOR"));
        if (*variable != '\0')
            environment.insert(QLatin1String(variable), QLatin1String(value));
        const QString kept = qEnvironmentVariable("PELORA_KEEP_PICTURES", folder_.path());
        const QString name = QStringLiteral("%1x%2-%3-%4.png")
                                 .arg(screen.width())
                                 .arg(screen.height())
                                 .arg(page)
                                 .arg(QLatin1String(value));
        const QString picture = kept + QLatin1Char('/') + name;
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(QStringLiteral(SCREEN_FIT_SCENARIO), {picture, QString::number(page)});
        if (!program.waitForFinished(60000) || program.exitCode() != 0)
            qFatal("the program on display %s ended with %d", qPrintable(display.name()),
                   program.exitCode());
        return QImage(picture);
    }

    QTemporaryDir folder_;
};

QTEST_GUILESS_MAIN(ScreenFitTest)
#include "tst_screen_fit.moc"
