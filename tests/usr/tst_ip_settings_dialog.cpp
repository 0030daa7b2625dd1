#include "tests/support/dialog_answers.h"
#include "tests/usr/fake_module.h"
#include "usr/ip_settings_dialog.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <memory>

using namespace std::chrono_literals;

namespace {
const QByteArray ipSeven("\xc0\xa8\x01\x07", 4);
const QByteArray ipNine("\xc0\xa8\x01\x09", 4);
const QByteArray mac("\x9c\xa5\x25\x1a\x2b\x3c", 6);

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QByteArray bytes(const char *hex)
{
    return QByteArray::fromHex(hex);
}

QStringList rounds(int count)
{
    QStringList order;
    for (int i = 0; i < count; ++i)
        order += {text("search"), text("login")};
    return order;
}

const QString applied = QStringLiteral("The IP was applied successfully");
const QString failed = QStringLiteral("Error in applying IP");
} // namespace

/// The IP settings dialog, used as a user would.
class IpSettingsDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        boxes_ = std::make_unique<BoxAnswers>();
        module_ = std::make_unique<FakeModule>();
        module_->answerSearches({{FakeModule::discoveryReply(ipSeven, mac, "Desk")}});
        module_->answerLogins({{FakeModule::configuration('\x80')}});
    }

    void cleanup()
    {
        dialog_.reset();
        module_.reset();
        boxes_.reset();
    }

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
        for (const QWidget *widget : dialog_->findChildren<QWidget *>())
            QVERIFY(widget->toolTip().isEmpty());
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

    void theRadioButtonsSwitchLayoutAndAllocation()
    {
        makeDialog("80");
        dialog_->show();
        clickButton(*dialog_, "radioButton_DHCP");
        expectLayout(false);
        QCOMPARE(dialog_->ipAllocation(), text("00"));
        clickButton(*dialog_, "radioButton_Static");
        expectLayout(true);
        QCOMPARE(dialog_->ipAllocation(), text("80"));
    }

    void fieldsThatCannotBeReadShowMinusOne()
    {
        module_->answerLogins({{FakeModule::refusal()}});
        makeDialog("80");
        QCOMPARE(dialog_->address(), text("-1"));
        QCOMPARE(dialog_->subnetMask(), text("-1"));
        QCOMPARE(dialog_->gateway(), text("-1"));
        QCOMPARE(dialog_->usrName(), text("Desk"));
        QCOMPARE(boxes_->texts(), QStringList(3, text("Bad credentials")));
    }

    void anApplyMovesTheModuleAndReadsItAgain()
    {
        makeDialog("80");
        module_->forgetFrames();
        module_->answerSearches([](int nth) { // the setup's search sees the old address still
            return FakeModule::Answers{
                {FakeModule::discoveryReply(nth == 1 ? ipSeven : ipNine, mac, "Desk 9")}};
        });
        bool noticeWasGone = false;
        boxes_->setInspector([&](QMessageBox &) { noticeWasGone = !notice()->isVisible(); });
        dialog_->show();
        typeInto(*dialog_, "lineEdit_IPv4_Address", text("192.168.1.9"));
        clickButton(*dialog_, "pushButton_Apply_IP");
        expectButtonsEnabled(false);
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(), QStringList{applied}, 20000);
        QCOMPARE(boxes_->seen().first().icon, QMessageBox::Information);
        QVERIFY(noticeWasGone);
        expectButtonsEnabled(true);
        QCOMPARE(module_->order(),
                 (QStringList{text("search"), text("setup"), text("commit"), text("search")} +
                  rounds(4)));
        QCOMPARE(module_->frames().at(1), bytes("ff5605 9ca5251a2b3c 61646d696e00 61646d696e00"
                                                "093803 80 2019500002"
                                                "0901a8c0 0101a8c0 00ffffff 4465736b2039"
                                                "61646d696e00 61646d696e00 02010000"
                                                "9ca5251a2b3c 100e000001000000 77"));
        QCOMPARE(dialog_->currentIP(), text("192.168.1.9"));
        QCOMPARE(child<QLabel>("label_IP")->text(), text("192.168.1.9"));
        QCOMPARE(dialog_->usrName(), text("Desk 9"));
    }

    void theWaitingNoticeIsModelessAndCanBeClosed()
    {
        makeDialog("80", {50ms, 1h, 1h});
        DialogAction<IP_Settings_Dialog> user([this](IP_Settings_Dialog &dialog) {
            clickButton(dialog, "pushButton_Apply_IP");
            QVERIFY(notice()->isVisible());
            QCOMPARE(notice()->parentWidget(), &dialog);
            QCOMPARE(notice()->windowModality(), Qt::NonModal);
            QCOMPARE(notice()->text(), text("Please wait for changes to be made"));
            QCOMPARE(notice()->windowTitle(), text("Information"));
            QCOMPARE(notice()->icon(), QMessageBox::Information);
            QTest::mouseClick(notice()->button(QMessageBox::Ok), Qt::LeftButton);
            QVERIFY(!notice()->isVisible());
            QVERIFY(dialog.isVisible());
            dialog.close();
        });
        dialog_->exec();
        QVERIFY(user.hasRun());
    }

    void anOctetOver255PassesAndIsSentAsAnEmptyField()
    {
        makeDialog("80");
        applyStatic(text("192.168.1.300"));
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(), QStringList{applied}, 20000);
        QCOMPARE(module_->frames().at(1), bytes("ff5605 9ca5251a2b3c 61646d696e00 61646d696e00"
                                                "093803 80 2019500002"
                                                "0101a8c0 00ffffff 4465736b"
                                                "61646d696e00 61646d696e00 02010000"
                                                "9ca5251a2b3c 100e000001000000 ac"));
    }

    void aTextThatIsNoAddressIsRefusedAndNothingSent_data()
    {
        QTest::addColumn<QString>("address");
        for (const char *wrong :
             {"192.168.1", "192.168.1.7 ", " 192.168.1.7", "192. 168.1.7", "192.168.1.7.8",
              "1921.68.1.7", "192.168.1.", "-1", "", "a.b.c.d"})
            QTest::addRow("'%s'", wrong) << text(wrong);
    }

    void aTextThatIsNoAddressIsRefusedAndNothingSent()
    {
        QFETCH(QString, address);
        makeDialog("80");
        applyStatic(address);
        QTRY_COMPARE(boxes_->texts(), QStringList{failed});
        QCOMPARE(boxes_->seen().first().icon, QMessageBox::Warning);
        QVERIFY(!notice()->isVisible());
        expectButtonsEnabled(true);
        QCOMPARE(dialog_->address(), address);
        QVERIFY(module_->frames().isEmpty());
    }

    void maskAndGatewayAreCheckedToo()
    {
        for (const char *field : {"lineEdit_Subnet_Mask", "lineEdit_Default_Gateway"}) {
            boxes_->forget();
            makeDialog("80");
            dialog_->show();
            typeInto(*dialog_, field, text("255.255"));
            module_->forgetFrames();
            clickButton(*dialog_, "pushButton_Apply_IP");
            QTRY_COMPARE(boxes_->texts(), QStringList{failed});
            QVERIFY(module_->frames().isEmpty());
        }
    }

    void dhcpWithEmptyFieldsIsNotCheckedAndWaitsTheLongerTime()
    {
        makeDialog("00", {10ms, 10ms, 1h}); // the other delay would outlast the test
        for (const char *field :
             {"lineEdit_IPv4_Address", "lineEdit_Subnet_Mask", "lineEdit_Default_Gateway"})
            child<QLineEdit>(field)->clear();
        module_->forgetFrames();
        dialog_->show();
        clickButton(*dialog_, "pushButton_Apply_IP");
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(), QStringList{applied}, 20000);
        QCOMPARE(module_->frames().at(1), bytes("ff5605 9ca5251a2b3c 61646d696e00 61646d696e00"
                                                "093803 00 2019500002 4465736b"
                                                "61646d696e00 61646d696e00 02010000"
                                                "9ca5251a2b3c 100e000001000000 c5"));
    }

    void aModuleThatIsNotFoundAgainLeavesAnEmptyAddress()
    {
        makeDialog("80", {10ms, 1h, 10ms});
        module_->answerSearches([](int nth) {
            return nth == 1
                       ? FakeModule::Answers{{FakeModule::discoveryReply(ipSeven, mac, "Desk")}}
                       : FakeModule::Answers();
        });
        dialog_->show();
        clickButton(*dialog_, "pushButton_Apply_IP");
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(), QStringList{applied}, 20000);
        QVERIFY(dialog_->currentIP().isEmpty());
        QVERIFY(child<QLabel>("label_IP")->text().isEmpty());
        QCOMPARE(dialog_->usrName(), text("Desk"));
        expectButtonsEnabled(true);
    }

    void withNoRadioButtonCheckedItAsksForOne()
    {
        makeDialog("80");
        for (const char *name : {"radioButton_DHCP", "radioButton_Static"}) {
            child<QRadioButton>(name)->setAutoExclusive(false);
            child<QRadioButton>(name)->setChecked(false);
        }
        module_->forgetFrames();
        dialog_->show();
        clickButton(*dialog_, "pushButton_Apply_IP");
        QTRY_COMPARE(boxes_->texts(), QStringList{text("Select IP allocation")});
        QCOMPARE(boxes_->seen().first().icon, QMessageBox::Warning);
        QVERIFY(!notice()->isVisible());
        expectButtonsEnabled(true);
        QVERIFY(module_->frames().isEmpty());
    }

    void connectHidesIt()
    {
        makeDialog("80");
        DialogAction<IP_Settings_Dialog> user(
            [](IP_Settings_Dialog &dialog) { clickButton(dialog, "pushButton_Connect"); });
        dialog_->exec();
        QVERIFY(user.hasRun());
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
        DialogAction<IP_Settings_Dialog> user([byEscape](IP_Settings_Dialog &dialog) {
            if (byEscape)
                QTest::keyClick(&dialog, Qt::Key_Escape);
            else
                dialog.close();
        });
        dialog_->exec();
        QVERIFY(user.hasRun());
        QVERIFY(dialog_->isClosed());
        QVERIFY(!dialog_->isVisible());
    }

    void enterConnectsUntilSomethingWasEditedAndAppliesThen()
    {
        makeDialog("80", {10ms, 1h, 10ms});
        dialog_->show();
        QVERIFY(child<QPushButton>("pushButton_Connect")->isDefault());
        typeInto(*dialog_, "lineEdit_IPv4_Address", text("192.168.1.7"));
        QVERIFY(child<QPushButton>("pushButton_Apply_IP")->isDefault());
        QTest::keyClick(child<QLineEdit>("lineEdit_IPv4_Address"), Qt::Key_Return);
        QVERIFY(dialog_->isVisible());
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(), QStringList{applied}, 20000);
        QVERIFY(child<QPushButton>("pushButton_Connect")->isDefault());
        QTest::keyClick(child<QLineEdit>("lineEdit_IPv4_Address"), Qt::Key_Return);
        QVERIFY(!dialog_->isVisible());
    }

    void closedWhileItWaitsItDoesNothingMore()
    {
        makeDialog("80", {10ms, 1h, 200ms});
        module_->forgetFrames();
        dialog_->show();
        clickButton(*dialog_, "pushButton_Apply_IP");
        QVERIFY(module_->waitForFrames(3));
        dialog_->close();
        QVERIFY(!notice()->isVisible());
        bool isOver = false;
        QTimer::singleShot(400ms, this, [&isOver] { isOver = true; });
        QTRY_VERIFY(isOver);
        QCOMPARE(module_->frames().size(), 3);
        QVERIFY(boxes_->seen().isEmpty());
    }

    void destroyedWhileItWaitsItIsSimplyGone()
    {
        makeDialog("80", {1ms, 1h, 100ms});
        module_->forgetFrames();
        dialog_->show();
        clickButton(*dialog_, "pushButton_Apply_IP");
        QVERIFY(module_->waitForFrames(3));
        dialog_.reset();
        bool isOver = false;
        QTimer::singleShot(300ms, this, [&isOver] { isOver = true; });
        QTRY_VERIFY(isOver);
        QCOMPARE(module_->frames().size(), 3);
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

private:
    UsrNetwork network() const { return module_->network(100ms, 5ms); }

    void makeDialog(const char *allocation, IpSettingsTiming timing = {10ms, 1h, 10ms})
    {
        dialog_ =
            std::make_unique<IP_Settings_Dialog>(nullptr, text("192.168.1.7"), text(allocation),
                                                 text("admin"), text("admin"), network(), timing);
    }

    void applyStatic(const QString &address)
    {
        module_->forgetFrames();
        dialog_->show();
        typeInto(*dialog_, "lineEdit_IPv4_Address", address);
        clickButton(*dialog_, "pushButton_Apply_IP");
    }

    void expectLayout(bool isStatic) const
    {
        for (const char *field :
             {"lineEdit_IPv4_Address", "lineEdit_Subnet_Mask", "lineEdit_Default_Gateway"})
            QCOMPARE(child<QLineEdit>(field)->isEnabled(), isStatic);
        QCOMPARE(child<QRadioButton>("radioButton_Static")->isChecked(), isStatic);
        QCOMPARE(child<QRadioButton>("radioButton_DHCP")->isChecked(), !isStatic);
    }

    void expectButtonsEnabled(bool areEnabled) const
    {
        for (const char *name : {"pushButton_Apply_IP", "pushButton_Connect", "radioButton_DHCP",
                                 "radioButton_Static"})
            QTRY_COMPARE(child<QAbstractButton>(name)->isEnabled(), areEnabled);
    }

    template <typename Widget>
    Widget *child(const char *name) const
    {
        return dialog_->findChild<Widget *>(text(name));
    }

    QMessageBox *notice() const { return dialog_->findChild<QMessageBox *>(); }

    std::unique_ptr<FakeModule> module_;
    std::unique_ptr<BoxAnswers> boxes_;
    std::unique_ptr<IP_Settings_Dialog> dialog_;
};

QTEST_MAIN(IpSettingsDialogTest)
#include "tst_ip_settings_dialog.moc"
