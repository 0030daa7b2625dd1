#include "readback/yes_no_dialog.h"
#include "support/serial_window.h"

#include <QTableWidget>
#include <QTest>

/// The Configuration page: what each control sends, and when.
class GeneralSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        s_ = std::make_unique<SerialWindow>();
        QVERIFY(s_->startAndRead());
        s_->device->forget();
    }
    void cleanup() { s_.reset(); }

    void aComboSendsItsCommandOnChange_data()
    {
        QTest::addColumn<QString>("combo");
        QTest::addColumn<int>("index");
        QTest::addColumn<QByteArray>("command");
        const auto row = [](const char *combo, int index, const char *command) {
            QTest::newRow(command) << QString::fromLatin1(combo) << index << QByteArray(command);
        };
        row("comboBox_KM_Control", 0, "//c1");
        row("comboBox_KM_Control", 2, "//c3");
        row("comboBox_KM_Control", 3, "//c4");
        row("comboBox_USB_Control", 0, "//u1");
        row("comboBox_USB_Control", 1, "//u2");
        row("comboBox_USB_Control", 3, "//u4");
        row("comboBox_Select_Display_Mode", 0, "//ks");
        row("comboBox_Enable_or_Disable_Cursor_Roll", 0, "//o0");
        row("comboBox_Select_active_port", 0, "//D2");
        row("comboBox_Select_active_port", 1, "//D3");
        row("comboBox_mouse_movement_resolution_setting_1", 5, "//CE 1 6");
        row("comboBox_mouse_movement_resolution_setting_2", 5, "//CE 2 6");
        row("comboBox_mouse_movement_resolution_setting_3", 5, "//CE 3 6");
        row("comboBox_mouse_movement_resolution_setting_4", 5, "//CE 4 6");
    }

    void aComboSendsItsCommandOnChange()
    {
        QFETCH(QString, combo);
        QFETCH(int, index);
        QFETCH(QByteArray, command);
        s_->combo(combo.toLatin1().constData())->setCurrentIndex(index);
        QTRY_COMPARE(s_->device->commands(), QList<QByteArray>{command});
    }

    void aPressOnAnEmptyCellDragsNothing()
    {
        auto *grid = s_->window->findChild<QTableWidget *>(QStringLiteral("tableWidget"));
        s_->button("TopologyAndDisplayBtn")->click();
        const auto press = [grid](int row, int column) {
            const QRect cell = grid->visualRect(grid->model()->index(row, column));
            QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
        };
        int empty = 0;
        while (empty < 16 && grid->item(empty / 4, empty % 4) != nullptr &&
               !grid->item(empty / 4, empty % 4)->text().isEmpty())
            ++empty;
        press(empty / 4, empty % 4);
        QVERIFY(!grid->dragEnabled());
        int held = 0;
        while (held < 16 && (grid->item(held / 4, held % 4) == nullptr ||
                             grid->item(held / 4, held % 4)->text().isEmpty()))
            ++held;
        press(held / 4, held % 4);
        QVERIFY(grid->dragEnabled());
    }

    void theOtherFormsGoOutOnTheWayBack()
    {
        s_->combo("comboBox_Select_Display_Mode")->setCurrentIndex(0);
        s_->combo("comboBox_Select_Display_Mode")->setCurrentIndex(1);
        s_->combo("comboBox_Enable_or_Disable_Cursor_Roll")->setCurrentIndex(0);
        s_->combo("comboBox_Enable_or_Disable_Cursor_Roll")->setCurrentIndex(1);
        s_->combo("comboBox_Select_active_port")->setCurrentIndex(0);
        s_->combo("comboBox_Select_active_port")->setCurrentIndex(2);
        QTRY_COMPARE(s_->device->commands(),
                     (QList<QByteArray>{"//ks", "//km", "//o0", "//o1", "//D2", "//D4"}));
    }

    void portsOneAndTwoGreyTheThirdAndTheFourthChannel()
    {
        auto *grid = s_->window->findChild<QTableWidget *>(QStringLiteral("tableWidget"));
        s_->combo("comboBox_Select_active_port")->setCurrentIndex(0);
        QCOMPARE(grid->item(1, 1)->text(), QStringLiteral("Channel 2"));
        QCOMPARE(grid->item(1, 2)->text(), QStringLiteral("Channel 3\nINACTIVE"));
        QCOMPARE(grid->item(1, 3)->text(), QStringLiteral("Channel 4\nINACTIVE"));
        s_->combo("comboBox_Select_active_port")->setCurrentIndex(2);
        QCOMPARE(grid->item(1, 3)->text(), QStringLiteral("Channel 4"));
    }

    void beepButtonsSwapAtOnceAndSend()
    {
        QVERIFY(!s_->button("pushButton_ON_Beep")->isEnabled());
        s_->button("pushButton_OFF_Beep")->click();
        QVERIFY(s_->button("pushButton_ON_Beep")->isEnabled());
        QVERIFY(!s_->button("pushButton_OFF_Beep")->isEnabled());
        s_->button("pushButton_ON_Beep")->click();
        QVERIFY(!s_->button("pushButton_ON_Beep")->isEnabled());
        QVERIFY(s_->button("pushButton_OFF_Beep")->isEnabled());
        QTRY_COMPARE(s_->device->commands(), (QList<QByteArray>{"//B0", "//B1"}));
    }

    void softResetSendsAtOnce()
    {
        s_->button("pushButton_Soft_Reset")->click();
        QTRY_COMPARE(s_->device->commands(), QList<QByteArray>{"//R"});
    }

    void aConfirmedFactoryResetIsFollowedByAReadBack()
    {
        s_->user.on<Yes_No_Dialog>([](Yes_No_Dialog &dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Norvik\u00ae Pelora Utility"));
            QCOMPARE(dialog.size(), QSize(312, 100));
            dialog.findChild<QPushButton *>(QStringLiteral("pushButton_OK"))->click();
        });
        s_->button("pushButton_Factory_Reset")->click();
        QTRY_COMPARE(s_->device->commands(), (QList<QByteArray>{"//F", "//rl", "//??", "//BP"}));
    }

    void aRefusedFactoryResetSendsNothing_data()
    {
        QTest::addColumn<bool>("byCancel");
        QTest::newRow("Cancel") << true;
        QTest::newRow("closed") << false;
    }

    void aRefusedFactoryResetSendsNothing()
    {
        QFETCH(bool, byCancel);
        bool asked = false;
        s_->user.on<Yes_No_Dialog>([&](Yes_No_Dialog &dialog) {
            asked = true;
            if (byCancel)
                dialog.findChild<QPushButton *>(QStringLiteral("pushButton_Cancel"))->click();
            else
                dialog.close();
        });
        s_->button("pushButton_Factory_Reset")->click();
        QVERIFY(asked);
        s_->button("pushButton_Soft_Reset")->click(); // sent last, so all before it has arrived
        QTRY_COMPARE(s_->device->commands(), QList<QByteArray>{"//R"});
    }

    void withoutALinkNoOtherButtonIsEnabled()
    {
        s_->button("pushButton_OFF_Connection")->click();
        QStringList enabled;
        const auto buttons = s_->window->findChildren<QPushButton *>();
        for (const QPushButton *button : buttons) {
            if (button->isEnabled())
                enabled.append(button->objectName());
        }
        enabled.sort();
        QCOMPARE(enabled, QStringList({QStringLiteral("ConfigurationBtn"),
                                       QStringLiteral("pushButton_Connection_Indicator"),
                                       QStringLiteral("pushButton_Connection_Settings"),
                                       QStringLiteral("pushButton_ON_Connection"),
                                       QStringLiteral("pushButton_Send_Command")}));
    }

    void whileAReplyIsAppliedNothingIsSent()
    {
        s_->device->answers["//rl"] =
            "//RL\nKM Port Limit: 2\nKM Cursor Rolling: Disabled\nKM tracking mode: Absolute\n"
            "C1\t100 250 OFFICE\nC2\t120 080 DESK\nC3\t010 010 SLOW\nC4\t500 500 FAST\n"
            "Channels resolution: 4 5 6 7\nBuzzer: off\n";
        s_->device->answers["//??"] = "Current KM Control: 4\nCurrent USB Control 1\n";
        s_->window->refresh_UI();
        QTRY_COMPARE(s_->combo("comboBox_KM_Control")->currentIndex(), 3);
        QTRY_COMPARE(s_->combo("comboBox_mouse_movement_resolution_setting_4")->currentIndex(), 6);
        s_->button("pushButton_Soft_Reset")->click();
        QTRY_COMPARE(s_->device->commands(), (QList<QByteArray>{"//rl", "//??", "//BP", "//R"}));
    }

private:
    std::unique_ptr<SerialWindow> s_;
};

QTEST_MAIN(GeneralSettingsTest)
#include "tst_general_settings.moc"
