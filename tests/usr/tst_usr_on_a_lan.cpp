#include "connection/select_hardware_dialog.h"
#include "tests/support/dialog_recorder.h"
#include "usr/change_setting_for_usr_dialog.h"
#include "usr/credentials_dialog.h"
#include "usr/ip_settings_dialog.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QTest>
#include <ctime>
#include <memory>

using namespace std::chrono_literals;

namespace {
QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// The process's resident memory in kB, 0 where the system does not tell.
long residentMemory()
{
    QFile status(text("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    }
    return 0;
}
} // namespace

/// The dialogs and the searcher as the program uses them, with the real broadcast address, ports
/// and waits, against two simulated modules on a network that leads nowhere. The steps build on
/// one another.
class UsrOnALanTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        startModules({text("--address"), text("192.0.2.7"), text("--address"), text("192.0.2.8"),
                      text("--fleet"), text("2"), text("--name"), text("Desk")});
    }

    void init()
    {
        boxes_ = std::make_unique<DialogRecorder>();
        boxes_->passOverModelessBoxes();
    }

    void cleanup()
    {
        boxes_.reset();
        QUdpSocket other;
        QVERIFY2(other.bind(QHostAddress(QHostAddress::AnyIPv4), 4242),
                 "the discovery port was not given back");
    }

    void cleanupTestCase() { stopModules(); }

    void bothModulesAreListed()
    {
        Select_hardware_Dialog dialog;
        QCOMPARE(dialog.modules().size(), 2);
        QStringList addresses;
        for (const FoundModule &module : dialog.modules())
            addresses.append(module.address);
        addresses.sort();
        QCOMPARE(addresses, (QStringList{text("192.0.2.7"), text("192.0.2.8")}));
        const int row = dialog.modules().first().address == text("192.0.2.7") ? 0 : 1;
        dialog.findChild<QComboBox *>()->setCurrentIndex(row);
        QCOMPARE(dialog.selectedAddress(), text("192.0.2.7"));
    }

    void aWrongPasswordIsRefused()
    {
        QCOMPARE(allocationByLogin("192.0.2.7", "admin", "wrong"), text("-1"));
        QCOMPARE(boxes_->texts(), QStringList{text("Bad credentials")});
    }

    void theRightOneIsTaken()
    {
        QCOMPARE(allocationByLogin("192.0.2.7", "admin", "admin"), text("80"));
        QVERIFY(boxes_->seen().isEmpty());
    }

    void fromStaticToDhcpAndToAnotherStaticAddress()
    {
        IP_Settings_Dialog dialog(nullptr, text("192.0.2.7"), text("80"), text("admin"),
                                  text("admin"));
        QCOMPARE(dialog.address(), text("192.0.2.7"));
        QCOMPARE(dialog.subnetMask(), text("255.255.255.0"));
        const QString name = dialog.usrName();
        QVERIFY(name.startsWith(text("Desk")));
        dialog.show();

        clickButton(dialog, "radioButton_DHCP");
        clickButton(dialog, "pushButton_Apply_IP");
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(), QStringList{applied_}, 60000);
        QVERIFY(!dialog.currentIP().isEmpty());
        USR_searcher asDhcp(dialog.currentIP(), text("admin"), text("admin"));
        QCOMPARE(asDhcp.get_IP_allocation(), text("00"));

        boxes_->forget();
        clickButton(dialog, "radioButton_Static");
        typeInto(dialog, "lineEdit_IPv4_Address", text("192.0.2.9"));
        typeInto(dialog, "lineEdit_Default_Gateway", text("192.0.2.1"));
        clickButton(dialog, "pushButton_Apply_IP");
        QTRY_COMPARE_WITH_TIMEOUT(boxes_->texts(), QStringList{applied_}, 60000);
        QCOMPARE(dialog.currentIP(), text("192.0.2.9"));
        QCOMPARE(dialog.address(), text("192.0.2.9"));
        QCOMPARE(dialog.gateway(), text("192.0.2.1"));
        QCOMPARE(dialog.usrName(), name);
    }

    void theSwitchAnswersBehindTheNewAddress()
    {
        QUdpSocket link;
        link.connectToHost(text("192.0.2.9"), 23);
        QVERIFY(link.waitForConnected(3000));
        link.write("//??\r");
        QByteArray received;
        QTRY_VERIFY_WITH_TIMEOUT((received += link.readAll()).contains("Current KM Control"),
                                 10000);
    }

    void newNameAndCredentialsAreTaken()
    {
        Change_setting_for_USR_Dialog dialog(nullptr, text("192.0.2.9"), text("192.0.2.9"),
                                             text("255.255.255.0"), text("192.0.2.1"), text("80"),
                                             text("admin"), text("admin"), text("Desk"));
        dialog.show();
        typeInto(dialog, "lineEdit_Name", text("Meeting Room 4-5"));
        typeInto(dialog, "lineEdit_Username", text("userna"));
        typeInto(dialog, "lineEdit_Password", text("pass12"));
        clickButton(dialog, "pushButton_Apply");
        QVERIFY(dialog.wasApplied());

        // The module restarts and hears nothing at first: the login asks until it does.
        QCOMPARE(allocationByLogin("192.0.2.9", "userna", "pass12"), text("80"));
        boxes_->forget();
        QCOMPARE(allocationByLogin("192.0.2.9", "admin", "admin"), text("-1"));
        QCOMPARE(boxes_->texts(), QStringList{text("Bad credentials")});
        USR_searcher searcher(text("192.0.2.9"), text("userna"), text("pass12"));
        QCOMPARE(searcher.get_name(), text("Meeting Room 4-5"));
        QCOMPARE(searcher.get_static_IP(), text("192.0.2.9"));
    }

    void aModuleThatStumblesTwentyTimesIsFoundInTheEnd()
    {
        stopModules();
        startModules(
            {text("--address"), text("192.0.2.7"), text("--fault"), text("discovery-size=37:20")});
        USR_searcher searcher;
        const long memoryBefore = residentMemory();
        const std::clock_t cpuBefore = std::clock();
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(searcher.search_USR(), 1);
        QVERIFY(clock.elapsed() >= 21 * 1500);
        QCOMPARE(searcher.get_replies().size(), 1);
        QVERIFY2(double(std::clock() - cpuBefore) / CLOCKS_PER_SEC < 6, "the core was burnt");
        QVERIFY2(residentMemory() - memoryBefore < 4096, "the memory grew");
    }

private:
    void startModules(const QStringList &options)
    {
        const QString program = qEnvironmentVariable("PELORA_SIMULATOR");
        QVERIFY2(!program.isEmpty(), "PELORA_SIMULATOR names no program");
        modules_ = std::make_unique<QProcess>();
        modules_->setProcessChannelMode(QProcess::MergedChannels);
        modules_->start(program, QStringList{text("module")} + options);
        QVERIFY2(modules_->waitForReadyRead(10000), qPrintable(modules_->errorString()));
        QVERIFY2(modules_->peek(7) == "module ", modules_->readAll().constData());
    }

    void stopModules()
    {
        if (!modules_)
            return;
        modules_->terminate();
        if (!modules_->waitForFinished(5000))
            modules_->kill();
        modules_->waitForFinished(5000);
        modules_.reset();
    }

    QString allocationByLogin(const char *address, const char *username, const char *password)
    {
        boxes_->once<Credentials_Dialog>([&](Credentials_Dialog &dialog) {
            typeInto(dialog, "lineEdit_username", text(username));
            typeInto(dialog, "lineEdit_password", text(password));
            clickButton(dialog, "pushButton_ip_allocation");
        });
        Credentials_Dialog dialog(nullptr, text(address));
        dialog.exec();
        return dialog.ipAllocation();
    }

    const QString applied_ = text("The IP was applied successfully");
    std::unique_ptr<QProcess> modules_;
    std::unique_ptr<DialogRecorder> boxes_;
};

QTEST_MAIN(UsrOnALanTest)
#include "tst_usr_on_a_lan.moc"
