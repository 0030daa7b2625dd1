#include "tests/usr/ip_settings_fixture.h"

#include <QLabel>
#include <QPushButton>

using namespace std::chrono_literals;

/// How the IP settings dialog looks, opens and closes.
class IpSettingsDialogTest : public IpSettingsFixture
{
    Q_OBJECT

private Q_SLOTS:
    void looks()
    {
        makeDialog("80");
        dialog_->show();
        QCOMPARE(dialog_->size(), QSize(500, 450));
        QCOMPARE(dialog_->minimumSize(), dialog_->maximumSize());
        QCOMPARE(dialog_->windowTitle(), text("Norvik\xC2\xAE Pelora Utility"));
        QVERIFY(!dialog_->windowIcon().isNull());
        QStringList texts;
        for (const QLabel *label : dialog_->findChildren<QLabel *>()) {
            texts.append(label->text());
            QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                     qPrintable(label->text()));
        }
        for (const char *expected :
             {"IP Settings",
              "To change IP settings, update preferences and press \"Apply IP\" before connecting",
              "If no changes are needed, press \"Connect\"",
              "IP Allocation:", "IPv4 Address:", "Subnet Mask:", "Default Gateway:", "192.168.1.7"})
            QVERIFY2(texts.contains(text(expected)), expected);
        QCOMPARE(child<QLabel>("label_heading")->palette().windowText().color(),
                 QColor(0, 120, 215));
        QCOMPARE(child<QPushButton>("pushButton_Apply_IP")->text(), text("Apply IP"));
        QCOMPARE(child<QPushButton>("pushButton_Connect")->text(), text("Connect"));
        QCOMPARE(child<QPushButton>("pushButton_Connect")->styleSheet(),
                 child<QPushButton>("pushButton_Apply_IP")->styleSheet());
        QCOMPARE(child<QRadioButton>("radioButton_DHCP")->text(), text("DHCP"));
        QCOMPARE(child<QRadioButton>("radioButton_Static")->text(), text("Static"));
        for (const char *field :
             {"lineEdit_IPv4_Address", "lineEdit_Subnet_Mask", "lineEdit_Default_Gateway"})
            QVERIFY(child<QLineEdit>(field)->toolTip().contains(
                text("above 255 is sent as an empty field")));
    }

    void theMainWindowsStyleDoesNotReachIt()
    {
        QWidget window;
        window.setStyleSheet(text("QPushButton {font-size: 14px;height: 45px;width: 100px;}"
                                  "QLabel {font-size: 14px;}"));
        IP_Settings_Dialog dialog(&window, text("192.168.1.7"), text("00"), text("admin"),
                                  text("admin"), network(), {1h, 1h, 1h});
        dialog.show();
        for (const char *name : {"pushButton_Apply_IP", "pushButton_Connect"})
            QCOMPARE(dialog.findChild<QPushButton *>(text(name))->size(), QSize(140, 38));
        QCOMPARE(dialog.findChild<QLabel *>(text("label_heading"))->font().pixelSize(), 20);
        clickButton(dialog, "pushButton_Apply_IP");
        auto *box = dialog.findChild<QMessageBox *>();
        QVERIFY(box->isVisible());
        QCOMPARE(box->findChild<QLabel *>(text("qt_msgbox_label"))->font().pointSize(), 12);
        dialog.close();
    }

    void realDelaysAreTheDefaults()
    {
        const IpSettingsTiming timing;
        QCOMPARE(timing.beforeApply, 50ms);
        QCOMPARE(timing.afterDhcp, 6000ms);
        QCOMPARE(timing.afterStatic, 3500ms);
    }

    void openingAfterALoginMakesFourSearchesAndLogins()
    {
        USR_searcher login(text("192.168.1.7"), text("admin"), text("admin"), network());
        QCOMPARE(login.get_IP_allocation(), text("80"));
        makeDialog("80");
        QCOMPARE(module_->order(), rounds(4));
        QCOMPARE(dialog_->currentIP(), text("192.168.1.7"));
        QCOMPARE(dialog_->usrName(), text("Desk"));
        QCOMPARE(dialog_->address(), text("192.168.1.7"));
        QCOMPARE(dialog_->subnetMask(), text("255.255.255.0"));
        QCOMPARE(dialog_->gateway(), text("192.168.1.1"));
        QCOMPARE(dialog_->username(), text("admin"));
        QCOMPARE(dialog_->password(), text("admin"));
        QVERIFY(boxes_->seen().isEmpty());
    }

    void openingWithAllocation80IsStaticAndAllElseDhcp_data()
    {
        QTest::addColumn<QString>("allocation");
        QTest::addColumn<bool>("isStatic");
        QTest::newRow("80") << text("80") << true;
        QTest::newRow("00") << text("00") << false;
        QTest::newRow("-1") << text("-1") << false;
        QTest::newRow("empty") << QString() << false;
    }

    void openingWithAllocation80IsStaticAndAllElseDhcp()
    {
        QFETCH(QString, allocation);
        QFETCH(bool, isStatic);
        makeDialog(allocation.toUtf8());
        expectLayout(isStatic);
        QCOMPARE(dialog_->ipAllocation(), isStatic ? text("80") : text("00"));
    }

    void theRadioButtonsSwitchTheLayoutAndNothingThatOutlivesTheDialog()
    {
        makeDialog("80");
        dialog_->show();
        clickButton(*dialog_, "radioButton_DHCP");
        expectLayout(false);
        QCOMPARE(dialog_->ipAllocation(), text("80"));
        clickButton(*dialog_, "radioButton_Static");
        expectLayout(true);
        makeDialog("00");
        clickButton(*dialog_, "radioButton_Static");
        expectLayout(true);
        QCOMPARE(dialog_->ipAllocation(), text("00"));
    }

    void whatIsTypedAndNotAppliedIsForgotten()
    {
        makeDialog("80");
        dialog_->show();
        typeInto(*dialog_, "lineEdit_IPv4_Address", text("10.1.2.3"));
        typeInto(*dialog_, "lineEdit_Subnet_Mask", text("255.0.0.0"));
        typeInto(*dialog_, "lineEdit_Default_Gateway", text("10.0.0.1"));
        clickButton(*dialog_, "pushButton_Connect");
        QCOMPARE(dialog_->address(), text("192.168.1.7"));
        QCOMPARE(dialog_->subnetMask(), text("255.255.255.0"));
        QCOMPARE(dialog_->gateway(), text("192.168.1.1"));
    }

    void fieldsThatCannotBeReadShowMinusOne()
    {
        module_->answerLogins({{FakeModule::refusal()}});
        makeDialog("80");
        QCOMPARE(dialog_->address(), text("-1"));
        QCOMPARE(dialog_->subnetMask(), text("-1"));
        QCOMPARE(dialog_->gateway(), text("-1"));
        for (const char *field :
             {"lineEdit_IPv4_Address", "lineEdit_Subnet_Mask", "lineEdit_Default_Gateway"})
            QCOMPARE(child<QLineEdit>(field)->text(), text("-1"));
        QCOMPARE(dialog_->usrName(), text("Desk"));
        QCOMPARE(boxes_->texts(), QStringList(3, text("Bad credentials")));
    }

    void connectHidesIt()
    {
        makeDialog("80");
        boxes_->once<IP_Settings_Dialog>(
            [](IP_Settings_Dialog &dialog) { clickButton(dialog, "pushButton_Connect"); });
        dialog_->exec();
        QVERIFY(!boxes_->isWaiting());
        QVERIFY(!dialog_->isVisible());
        QVERIFY(!dialog_->isClosed());
    }

    void escapeAndTheCloseButtonCountAsClosing_data()
    {
        QTest::addColumn<bool>("byEscape");
        QTest::newRow("Escape") << true;
        QTest::newRow("close button") << false;
    }

    void escapeAndTheCloseButtonCountAsClosing()
    {
        QFETCH(bool, byEscape);
        makeDialog("80");
        boxes_->once<IP_Settings_Dialog>([byEscape](IP_Settings_Dialog &dialog) {
            if (byEscape)
                QTest::keyClick(&dialog, Qt::Key_Escape);
            else
                dialog.close();
        });
        dialog_->exec();
        QVERIFY(!boxes_->isWaiting());
        QVERIFY(dialog_->isClosed());
        QVERIFY(!dialog_->isVisible());
    }

    void itKeepsWhatTheAdminSettingsChanged()
    {
        makeDialog("80");
        dialog_->takeAdminSettings(text("New"), text("user"), text("pass"));
        QCOMPARE(dialog_->usrName(), text("New"));
        QCOMPARE(dialog_->username(), text("user"));
        QCOMPARE(dialog_->password(), text("pass"));
        QCOMPARE(dialog_->currentIP(), text("192.168.1.7"));
    }
};

QTEST_MAIN(IpSettingsDialogTest)
#include "tst_ip_settings_dialog.moc"
