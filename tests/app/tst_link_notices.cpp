#include "crossing_bench.h"

#include <QWindow>

/// What the window shows and says of a link that does not open, is lost, or stays silent.
class LinkNoticesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPortThatDoesNotOpenLeavesEverythingDisabled_data()
    {
        QTest::addColumn<bool>("byWizard");
        QTest::newRow("Connection Settings") << true;
        QTest::newRow("port selector") << false;
    }

    void aPortThatDoesNotOpenLeavesEverythingDisabled()
    {
        QFETCH(bool, byWizard);
        SerialWindow s;
        QVERIFY(s.startAndRead());
        if (byWizard) {
            qputenv("PELORA_EXTRA_SERIAL_PORTS", "/dev/no_such_port");
            s.button("pushButton_Connection_Settings")->click();
        } else {
            s.combo("comboBox_SelectPort")->addItem(QStringLiteral("/dev/no_such_port"));
            s.combo("comboBox_SelectPort")
                ->setCurrentIndex(s.combo("comboBox_SelectPort")->count() - 1);
        }
        QVERIFY(isDisconnected(s));
        QVERIFY(s.button("pushButton_ON_Connection")
                    ->toolTip()
                    .contains(QStringLiteral("/dev/no_such_port could not be opened")));
    }

    void theNoticeOfALostLinkDoesNotKeepTheProgram()
    {
        SerialWindow s;
        s.user.leaveBoxesOpen();
        QVERIFY(s.startAndRead());
        s.unplug();
        QTRY_COMPARE(s.user.seen().size(), 1);
        QMessageBox *notice = openBox();
        QVERIFY(notice);
        QVERIFY2(notice->windowHandle()->transientParent() == s.window->windowHandle(),
                 "it stays above the window");
        QTimer::singleShot(0, s.window.get(), [&s] { s.window->close(); });
        QTimer::singleShot(5000, qApp, [] { QCoreApplication::exit(7); });
        QCOMPARE(QApplication::exec(), 0);
        s.window.reset();
        QVERIFY(!openBox());
    }

    void theNoticeOfALostLinkGoesWhenTheLinkIsBack()
    {
        TwoSwitches s;
        s.user.leaveBoxesOpen();
        QVERIFY(s.startWithFile());
        s.unplug();
        QTRY_COMPARE(s.user.seen().size(), 1);
        QVERIFY(s.user.seen().constFirst().text.contains(
            QStringLiteral("; check the cable, then press On")));
        for (const char *name : {"pushButton_ON_Connection", "pushButton_Connection_Indicator"})
            QCOMPARE(s.button(name)->toolTip(),
                     QStringLiteral("Disconnected: ") + s.user.seen().constFirst().text);
        QVERIFY(openBox());
        s.button("pushButton_ON_Connection")->click(); // in vain
        QVERIFY(openBox());
        s.combo("comboBox_SelectPort")->setCurrentIndex(1);
        QTRY_VERIFY(s.isGreen());
        QVERIFY(!openBox());
    }

    void aSilentSwitchIsSpokenOf()
    {
        SerialWindow s;
        s.device->answers.clear();
        WindowSettings settings = SerialWindow::quick();
        settings.networkLink.noAnswer = std::chrono::milliseconds(50);
        s.start(settings);
        const auto tip = [&s](const char *name) { return s.button(name)->toolTip(); };
        QTRY_VERIFY(tip("pushButton_Connection_Indicator")
                        .startsWith(QStringLiteral("No answer from the switch; ")));
        QVERIFY(tip("pushButton_ON_Connection").endsWith(QStringLiteral("press On")));
        QCOMPARE(s.log().count("No answer from the switch; "), 1);
        QVERIFY(s.user.seen().isEmpty());
        s.device->answers = ScriptedSwitch::cannedAnswers();
        s.button("pushButton_ON_Connection")->click();
        QVERIFY(s.waitForRead());
        QCOMPARE(tip("pushButton_Connection_Indicator"), QStringLiteral("Connected"));
        QCOMPARE(tip("pushButton_ON_Connection"), QString());

        s.device->answers.clear();
        s.window->refresh_UI();
        QTRY_VERIFY(tip("pushButton_Connection_Indicator")
                        .startsWith(QStringLiteral("No answer from the switch; press Refresh")));
        QCOMPARE(s.log().count("No answer from the switch; "), 2);
    }

    void onWithoutAPortSaysWhereToChooseOne()
    {
        SerialWindow s;
        s.user.on<Select_connection_method_Dialog>(
            [](Select_connection_method_Dialog &dialog) { dialog.close(); });
        s.start();
        s.button("pushButton_ON_Connection")->click();
        QVERIFY(s.button("pushButton_Connection_Indicator")
                    ->toolTip()
                    .contains(QStringLiteral("no port chosen; press Connection Settings")));
        QVERIFY(s.log().contains("no port chosen; press Connection Settings"));
    }

    void theLinkIsClosedBeforeTheStopLine()
    {
        SerialWindow s;
        WindowSettings settings = SerialWindow::quick();
        settings.linkFactories.serialPort = [](const QString &name) {
            return std::make_unique<TellingPort>(name);
        };
        QVERIFY(s.startAndRead(settings));
        s.window.reset();
        const QByteArray lines = s.log();
        QVERIFY2(lines.contains("the port is closed   "), lines.constData());
        QVERIFY(lines.indexOf("the port is closed   ") < lines.indexOf("Stop........."));
    }

private:
    /// A port that writes a line when it is closed.
    class TellingPort : public QSerialPort
    {
    public:
        using QSerialPort::QSerialPort;
        void close() override
        {
            writeLog("the port is closed");
            QSerialPort::close();
        }
    };

    static QMessageBox *openBox()
    {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            auto *box = qobject_cast<QMessageBox *>(window);
            if (box != nullptr && box->isVisible())
                return box;
        }
        return nullptr;
    }
};

QTEST_MAIN(LinkNoticesTest)
#include "tst_link_notices.moc"
