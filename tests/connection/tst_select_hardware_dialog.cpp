#include "connection/select_hardware_dialog.h"
#include "tests/support/dialog_recorder.h"
#include "tests/usr/fake_module.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <cstdio>
#include <memory>

using namespace std::chrono_literals;

namespace {
const QByteArray ipSeven("\xc0\xa8\x01\x07", 4);
const QByteArray ipEight("\xc0\xa8\x01\x08", 4);
const QByteArray macOne("\x9c\xa5\x25\x00\x00\x01", 6);
const QByteArray macTwo("\x9c\xa5\x25\x00\x00\x02", 6);

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

FakeModule::Answer reply(const QByteArray &ip, const QByteArray &mac, const QByteArray &name)
{
    return {FakeModule::discoveryReply(ip, mac, name)};
}

/// What the test runs itself as, to see a process end: the dialog on a network without modules,
/// at once or after `refreshes` has found one module the first time.
int runWithoutModules(bool onRefresh)
{
    FakeModule module;
    module.answerSearches([onRefresh](int nth) {
        return onRefresh && nth == 1 ? FakeModule::Answers{reply(ipSeven, macOne, "Desk")}
                                     : FakeModule::Answers();
    });
    DialogRecorder boxes;
    boxes.beforeButton([](QMessageBox &box) {
        std::printf("%d %s|%s\n", int(box.icon()), qPrintable(box.windowTitle()),
                    qPrintable(box.text()));
        std::fflush(stdout);
    });
    boxes.once<Select_hardware_Dialog>(
        [](Select_hardware_Dialog &dialog) { clickButton(dialog, "pushButton_Refresh"); });
    Select_hardware_Dialog dialog(nullptr, module.network());
    dialog.exec();
    return 0;
}
} // namespace

/// The list of hardware, used as a user would.
class SelectHardwareDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        boxes_ = std::make_unique<DialogRecorder>();
        module_ = std::make_unique<FakeModule>();
        module_->answerSearches(
            {reply(ipSeven, macOne, "Desk"), reply(ipEight, macTwo, "Meeting Room 4-5")});
        dialog_ = std::make_unique<Select_hardware_Dialog>(nullptr, module_->network());
    }

    void cleanup()
    {
        dialog_.reset();
        module_.reset();
        QVERIFY(boxes_->seen().isEmpty());
        boxes_.reset();
    }

    void looks()
    {
        dialog_->show();
        QCOMPARE(dialog_->size(), QSize(405, 341));
        QCOMPARE(dialog_->minimumSize(), dialog_->maximumSize());
        QCOMPARE(dialog_->windowTitle(), text("Norvik\xC2\xAE Pelora Utility"));
        QVERIFY(!dialog_->windowIcon().isNull());
        QStringList texts;
        for (const QLabel *label : dialog_->findChildren<QLabel *>()) {
            texts.append(label->text());
            QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                     qPrintable(label->text()));
        }
        QVERIFY(texts.contains(text("Below is a list of hardware that has been found.")));
        QVERIFY(texts.contains(
            text(" Select the device you want to configure control and press Continue.")));
        QCOMPARE(button("pushButton_Refresh")->text(), text("Refresh"));
        QCOMPARE(button("pushButton_Continue")->text(), text("Continue"));
        QVERIFY(button("pushButton_Continue")->isDefault());
    }

    void entriesJoinAddressAndNameWithThreeBlanks()
    {
        QCOMPARE(entries(),
                 (QStringList{text("192.168.1.7   Desk"), text("192.168.1.8   Meeting Room 4-5")}));
        QCOMPARE(dialog_->selectedAddress(), text("192.168.1.7"));
        QCOMPARE(dialog_->modules().size(), 2);
        QCOMPARE(dialog_->modules().at(1).address, text("192.168.1.8"));
        QCOMPARE(dialog_->modules().at(1).name, text("Meeting Room 4-5"));
        QCOMPARE(dialog_->searcher().get_replies().size(), 2);
        QVERIFY(button("pushButton_Refresh")->isEnabled());
        QVERIFY(button("pushButton_Continue")->isEnabled());
        QVERIFY(!dialog_->isCancelled());
    }

    void theEntryPickedIsTheAddressSelected()
    {
        boxes_->once<Select_hardware_Dialog>([this](Select_hardware_Dialog &dialog) {
            combo()->setCurrentIndex(1);
            QCOMPARE(dialog.selectedAddress(), text("192.168.1.8"));
            clickButton(dialog, "pushButton_Continue");
        });
        dialog_->exec();
        QVERIFY(!boxes_->isWaiting());
        QCOMPARE(dialog_->selectedAddress(), text("192.168.1.8"));
        QVERIFY(!dialog_->isCancelled());
        QVERIFY(!dialog_->isVisible());
    }

    void enterPressesContinue()
    {
        boxes_->once<Select_hardware_Dialog>(
            [this](Select_hardware_Dialog &) { QTest::keyClick(combo(), Qt::Key_Return); });
        dialog_->exec();
        QVERIFY(!boxes_->isWaiting());
        QVERIFY(!dialog_->isCancelled());
        QCOMPARE(dialog_->selectedAddress(), text("192.168.1.7"));
    }

    void refreshSearchesAgainAndSelectsTheFirst()
    {
        dialog_->show();
        combo()->setCurrentIndex(1);
        module_->answerSearches({reply(ipEight, macTwo, "Renamed")});
        clickButton(*dialog_, "pushButton_Refresh");
        QCOMPARE(entries(), QStringList{text("192.168.1.8   Renamed")});
        QCOMPARE(dialog_->selectedAddress(), text("192.168.1.8"));
        QCOMPARE(module_->order(), QStringList(2, text("search")));
        QVERIFY(button("pushButton_Refresh")->isEnabled());
        QVERIFY(button("pushButton_Continue")->isEnabled());
    }

    void refreshTakesACancellationBack()
    {
        dialog_->show();
        dialog_->close();
        QVERIFY(dialog_->isCancelled());
        dialog_->show();
        clickButton(*dialog_, "pushButton_Refresh");
        QVERIFY(!dialog_->isCancelled());
    }

    void aModuleThatAnswersTwiceIsListedOnceByItsLaterAnswer()
    {
        dialog_->show();
        module_->answerSearches({reply(ipSeven, macOne, "Desk"), reply(ipEight, macTwo, "Other"),
                                 reply(ipSeven, macOne, "Desk, later")});
        clickButton(*dialog_, "pushButton_Refresh");
        QCOMPARE(entries(),
                 (QStringList{text("192.168.1.7   Desk, later"), text("192.168.1.8   Other")}));
        QCOMPARE(dialog_->searcher().get_replies().size(), 3);
    }

    void twoModulesWithOneAddressAreTwoEntries()
    {
        dialog_->show();
        module_->answerSearches({reply(ipSeven, macOne, "One"), reply(ipSeven, macTwo, "Two")});
        clickButton(*dialog_, "pushButton_Refresh");
        QCOMPARE(entries(), (QStringList{text("192.168.1.7   One"), text("192.168.1.7   Two")}));
    }

    void escapeAndTheCloseButtonCancel_data()
    {
        QTest::addColumn<bool>("byEscape");
        QTest::newRow("Escape") << true;
        QTest::newRow("close button") << false;
    }

    void escapeAndTheCloseButtonCancel()
    {
        QFETCH(bool, byEscape);
        boxes_->once<Select_hardware_Dialog>([byEscape](Select_hardware_Dialog &dialog) {
            if (byEscape)
                QTest::keyClick(&dialog, Qt::Key_Escape);
            else
                dialog.close();
        });
        dialog_->exec();
        QVERIFY(!boxes_->isWaiting());
        QVERIFY(dialog_->isCancelled());
    }

    void noModuleSaysNoHardwareOnlineAndEndsWithStatus1_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::newRow("at once") << text("--alone");
        QTest::newRow("on Refresh") << text("--alone-on-refresh");
    }

    void noModuleSaysNoHardwareOnlineAndEndsWithStatus1()
    {
        QFETCH(QString, mode);
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(), {mode});
        QVERIFY(process.waitForFinished(30000));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 1);
        QCOMPARE(QString::fromUtf8(process.readAllStandardOutput().replace("\r\n", "\n")),
                 text("2 Information|No hardware online\n")); // 2: the warning icon
    }

private:
    QComboBox *combo() const { return dialog_->findChild<QComboBox *>(); }
    QPushButton *button(const char *name) const
    {
        return dialog_->findChild<QPushButton *>(text(name));
    }

    QStringList entries() const
    {
        QStringList entries;
        for (int i = 0; i < combo()->count(); ++i)
            entries.append(combo()->itemText(i));
        return entries;
    }

    std::unique_ptr<FakeModule> module_;
    std::unique_ptr<DialogRecorder> boxes_;
    std::unique_ptr<Select_hardware_Dialog> dialog_;
};

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QString mode = application.arguments().value(1);
    if (mode.startsWith(text("--alone")))
        return runWithoutModules(mode == text("--alone-on-refresh"));
    SelectHardwareDialogTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_select_hardware_dialog.moc"
