#include "form_window.h"

#include <QFile>

/// The main window's form: what stands in it and what it says.
class MainFormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void labelsCarryTheirTexts_data();
    void labelsCarryTheirTexts();
    void buttonsCarryTheirTexts_data();
    void buttonsCarryTheirTexts();
    void combosHoldTheirItemsAndStartAtIndexZero_data();
    void combosHoldTheirItemsAndStartAtIndexZero();
    void theFormHasNoOtherControls();
    void theFourResolutionCombosAreAlike();
    void fieldsAreEmptyAtStart();
    void theWindowHasTheFormsTitleAndName();
    void pagesStandInTheirOrder();
    void everyPageHoldsItsWidgets_data();
    void everyPageHoldsItsWidgets();
    void theTerminalIsReadOnlyPlainText();
    void theGridHasFourRowsAndColumns();
    void captionsAreBuddiesOfTheirFields_data();
    void captionsAreBuddiesOfTheirFields();
};

void MainFormTest::labelsCarryTheirTexts_data()
{
    QTest::addColumn<QString>("text");
    const QList<std::pair<const char *, const char *>> table = {
        {"label_52", ""},
        {"label", "Norvik Pelora Utility"},
        {"label_2", "Version 1.0"},
        {"label_26", "Build No. 092123a"},
        {"label_10", "Status"},
        {"label_current_Ip", ""},
        {"label_name_of_USR", ""},
        {"label_Select_port", "Select port"},
        {"label_11", "Connection On/Off"},
        {"label_6", "General Settings"},
        {"label_4", "KM Control:"},
        {"label_18", "USB Control:"},
        {"label_19", "USB Settings"},
        {"label_20", "Current Hotkey Trigger:"},
        {"label_Current_Hotkey_Trigger_Data", ""},
        {"label_5", "Mouse Mode:"},
        {"label_7", "Active Ports:"},
        {"label_3", "Cursor Rolling:"},
        {"label_8", "Custom Mouse Movement Settings"},
        {"label_29", "Mouse Speed Range is between 1-500"},
        {"label_16", "\xE2\x84\x96"}, // the numero sign
        {"label_12", "NAME"},
        {"label_13", "X"},
        {"label_14", "Y"},
        {"label_15", "Mouse Movement Resolution Settings"},
        {"label_47", "1"},
        {"label_48", "2"},
        {"label_49", "3"},
        {"label_50", "4"},
        {"label_23", "X"},
        {"label_27", "Y   "},
        {"label_28", "NAME"},
        {"label_9", "C1"},
        {"label_17", "C2"},
        {"label_21", "C3"},
        {"label_22", "C4"},
        {"label_Custom_1", ""},
        {"label_Custom_2", ""},
        {"label_Custom_3", ""},
        {"label_Custom_4", ""},
        {"label_24", "Layout"},
        {"label_25", "Edit the layout to create the KM topology alignment."},
    };
    for (const auto &[name, text] : table)
        QTest::newRow(name) << QString::fromUtf8(text);
}

void MainFormTest::labelsCarryTheirTexts()
{
    QFETCH(QString, text);
    FormWindow form;
    auto *label = form.find<QLabel>(QTest::currentDataTag());
    QVERIFY(label);
    QCOMPARE(label->text(), text);
}

void MainFormTest::buttonsCarryTheirTexts_data()
{
    QTest::addColumn<QString>("text");
    const QList<std::pair<const char *, const char *>> table = {
        {"pushButton_Connection_Indicator", ""},
        {"pushButton_Refresh", ""},
        {"ConfigurationBtn", "Configuration"},
        {"pushButton_Mouse_Speed_Settings", "Mouse Speed Settings"},
        {"TopologyAndDisplayBtn", "Layout"},
        {"pushButton_ON_Connection", "On"},
        {"pushButton_OFF_Connection", "Off"},
        {"pushButton_Create_Settings_File", "Create Settings File"},
        {"pushButton_Load_Settings_File", "Load Settings File"},
        {"pushButton_Admin_Settings", "Admin Settings"},
        {"pushButton_Connection_Settings", "Connection Settings"},
        {"pushButton_Factory_Reset", " Factory Reset"},
        {"pushButton_Soft_Reset", "Soft Reset"},
        {"pushButton_ON_Beep", "Beep On"},
        {"pushButton_OFF_Beep", "Beep Off"},
        {"pushButton_Submit_Custom_Mouse_Movement_Settings", "Submit"},
        {"pushButtonSubmit", "Submit"},
        {"pushButton_Send_Command", "SEND"},
    };
    for (const auto &[name, text] : table)
        QTest::newRow(name) << QString::fromUtf8(text);
}

void MainFormTest::buttonsCarryTheirTexts()
{
    QFETCH(QString, text);
    FormWindow form;
    auto *button = form.find<QPushButton>(QTest::currentDataTag());
    QVERIFY(button);
    QCOMPARE(button->text(), text);
}

void MainFormTest::combosHoldTheirItemsAndStartAtIndexZero_data()
{
    QTest::addColumn<QString>("items"); // separated by "|"
    const char resolutions[] =
        "1080p|4K|2K|3840x1080|5760x1080|7680x1080|1920x2160|1920x3240|1920x4320";
    const QList<std::pair<const char *, const char *>> table = {
        {"comboBox_KM_Control", "1|2|3|4"},
        {"comboBox_USB_Control", "1|2|3|4"},
        {"comboBox_Select_Display_Mode", "Absolute Mode|Relative Mode"},
        {"comboBox_Select_active_port", "Ports 1 and 2|Ports 1, 2, and 3|Ports 1, 2, 3, and 4"},
        {"comboBox_Enable_or_Disable_Cursor_Roll", "Off|On"},
        {"comboBox_number_of_setting", "C1|C2|C3|C4"},
        {"comboBox_mouse_movement_resolution_setting_1", resolutions},
        {"comboBox_mouse_movement_resolution_setting_2", resolutions},
        {"comboBox_mouse_movement_resolution_setting_3", resolutions},
        {"comboBox_mouse_movement_resolution_setting_4", resolutions},
    };
    for (const auto &[name, items] : table)
        QTest::newRow(name) << QString::fromUtf8(items);
}

void MainFormTest::combosHoldTheirItemsAndStartAtIndexZero()
{
    QFETCH(QString, items);
    FormWindow form;
    auto *combo = form.find<QComboBox>(QTest::currentDataTag());
    QVERIFY(combo);
    QStringList shown;
    for (int i = 0; i < combo->count(); ++i)
        shown.append(combo->itemText(i));
    QCOMPARE(shown.join(QLatin1Char('|')), items);
    QCOMPARE(combo->currentIndex(), 0);
}

void MainFormTest::theFormHasNoOtherControls()
{
    FormWindow form;
    QCOMPARE(form.window.findChildren<QLabel *>().size(), 42);
    QCOMPARE(form.window.findChildren<QPushButton *>().size(), 18);
    QCOMPARE(form.window.findChildren<QComboBox *>().size(), 11);
    QCOMPARE(form.ui.comboBox_SelectPort->count(), 0);
    QCOMPARE(form.window.findChildren<QLineEdit *>().size(), 4);
    QCOMPARE(form.window.findChildren<QTextEdit *>().size(), 2);
    QCOMPARE(form.window.findChildren<QTableWidget *>().size(), 1);
}

void MainFormTest::theFourResolutionCombosAreAlike()
{
    FormWindow form;
    const QComboBox *first = form.ui.comboBox_mouse_movement_resolution_setting_1;
    QCOMPARE(first->count(), 9);
    for (const QComboBox *other : {form.ui.comboBox_mouse_movement_resolution_setting_2,
                                   form.ui.comboBox_mouse_movement_resolution_setting_3,
                                   form.ui.comboBox_mouse_movement_resolution_setting_4}) {
        QCOMPARE(other->count(), 9);
        for (int i = 0; i < 9; ++i)
            QCOMPARE(other->itemText(i), first->itemText(i));
        QCOMPARE(other->width(), first->width());
    }
}

void MainFormTest::fieldsAreEmptyAtStart()
{
    FormWindow form;
    for (const char *name : {"lineEdit_Mouse_Movement_Name", "lineEdit_Mouse_Movement_X",
                             "lineEdit_Mouse_Movement_Y", "lineEdit_Command"}) {
        auto *field = form.find<QLineEdit>(name);
        QVERIFY2(field, name);
        QCOMPARE(field->text(), QString());
        QVERIFY2(!field->isReadOnly(), name);
    }
    QCOMPARE(form.ui.textEdit_Main_Terminal->toPlainText(), QString());
    QCOMPARE(form.ui.textEdit->toPlainText(), QString());
}

void MainFormTest::theWindowHasTheFormsTitleAndName()
{
    FormWindow form;
    QCOMPARE(form.window.windowTitle(), QStringLiteral(" KM Configuration Tool"));
    QCOMPARE(form.window.objectName(), QStringLiteral("TRQ_Mobile_Setter_UI"));
    QVERIFY(!form.ui.label_52->pixmap().isNull());
    QVERIFY(QFile::exists(QStringLiteral(":/img/logos/rsz_norvik_image.png")));
}

void MainFormTest::pagesStandInTheirOrder()
{
    FormWindow form;
    QCOMPARE(form.ui.stackedWidget->count(), 4);
    QCOMPARE(form.ui.stackedWidget->currentIndex(), 0);
    const char *names[] = {"page_1", "page_2", "page_4", "page"};
    for (int i = 0; i < 4; ++i)
        QCOMPARE(form.ui.stackedWidget->widget(i)->objectName(), QLatin1String(names[i]));
}

void MainFormTest::everyPageHoldsItsWidgets_data()
{
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QStringList>("names");
    const auto list = [](const char *names) {
        return QString::fromLatin1(names).split(QLatin1Char(' '));
    };
    QTest::newRow("window") << "centralwidget" << list("leftMenu_2 stackedWidget");
    QTest::newRow("frame of the configuration page")
        << "frame_26"
        << list("label_6 label_4 comboBox_KM_Control label_18 comboBox_USB_Control label_19 "
                "label_20 label_Current_Hotkey_Trigger_Data label_5 comboBox_Select_Display_Mode "
                "label_7 comboBox_Select_active_port label_3 "
                "comboBox_Enable_or_Disable_Cursor_Roll");
    QTest::newRow("configuration page")
        << "page_1"
        << list("frame_26 pushButton_Factory_Reset pushButton_Soft_Reset pushButton_ON_Beep "
                "pushButton_OFF_Beep line textEdit_Main_Terminal");
    QTest::newRow("mouse page")
        << "page_2"
        << list("label_8 label_29 label_16 comboBox_number_of_setting label_12 "
                "lineEdit_Mouse_Movement_Name label_13 lineEdit_Mouse_Movement_X label_14 "
                "lineEdit_Mouse_Movement_Y pushButton_Submit_Custom_Mouse_Movement_Settings "
                "label_15 label_47 label_48 label_49 label_50 "
                "comboBox_mouse_movement_resolution_setting_1 "
                "comboBox_mouse_movement_resolution_setting_2 "
                "comboBox_mouse_movement_resolution_setting_3 "
                "comboBox_mouse_movement_resolution_setting_4 label_23 label_27 label_28 label_9 "
                "label_17 label_21 label_22 label_Custom_1 label_Custom_2 label_Custom_3 "
                "label_Custom_4");
    QTest::newRow("layout page") << "page_4"
                                 << list("label_24 label_25 tableWidget pushButtonSubmit");
    QTest::newRow("service page") << "page"
                                  << list("textEdit lineEdit_Command pushButton_Send_Command");
}

void MainFormTest::everyPageHoldsItsWidgets()
{
    QFETCH(QString, parent);
    QFETCH(QStringList, names);
    FormWindow form;
    auto *holder = form.window.findChild<QWidget *>(parent);
    QVERIFY(holder);
    for (const QString &name : names)
        QVERIFY2(holder->findChild<QWidget *>(name), qPrintable(name));
}

void MainFormTest::theTerminalIsReadOnlyPlainText()
{
    FormWindow form;
    const QTextEdit *terminal = form.ui.textEdit_Main_Terminal;
    QVERIFY(terminal->isReadOnly());
    QVERIFY(!terminal->acceptRichText());
    QCOMPARE(terminal->textInteractionFlags(),
             Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QVERIFY(terminal->fontInfo().pixelSize() >= 12);
}

void MainFormTest::theGridHasFourRowsAndColumns()
{
    FormWindow form;
    QCOMPARE(form.ui.tableWidget->rowCount(), 4);
    QCOMPARE(form.ui.tableWidget->columnCount(), 4);
    QCOMPARE(form.ui.tableWidget->editTriggers(), QAbstractItemView::NoEditTriggers);
}

void MainFormTest::captionsAreBuddiesOfTheirFields_data()
{
    QTest::addColumn<QString>("field");
    const QList<std::pair<const char *, const char *>> table = {
        {"label_10", "pushButton_Connection_Indicator"},
        {"label_Select_port", "comboBox_SelectPort"},
        {"label_11", "pushButton_ON_Connection"},
        {"label_4", "comboBox_KM_Control"},
        {"label_18", "comboBox_USB_Control"},
        {"label_20", "label_Current_Hotkey_Trigger_Data"},
        {"label_5", "comboBox_Select_Display_Mode"},
        {"label_7", "comboBox_Select_active_port"},
        {"label_3", "comboBox_Enable_or_Disable_Cursor_Roll"},
        {"label_16", "comboBox_number_of_setting"},
        {"label_12", "lineEdit_Mouse_Movement_Name"},
        {"label_13", "lineEdit_Mouse_Movement_X"},
        {"label_14", "lineEdit_Mouse_Movement_Y"},
        {"label_47", "comboBox_mouse_movement_resolution_setting_1"},
        {"label_48", "comboBox_mouse_movement_resolution_setting_2"},
        {"label_49", "comboBox_mouse_movement_resolution_setting_3"},
        {"label_50", "comboBox_mouse_movement_resolution_setting_4"},
        {"label_9", "label_Custom_1"},
        {"label_17", "label_Custom_2"},
        {"label_21", "label_Custom_3"},
        {"label_22", "label_Custom_4"},
    };
    for (const auto &[caption, field] : table)
        QTest::newRow(caption) << QString::fromLatin1(field);
}

void MainFormTest::captionsAreBuddiesOfTheirFields()
{
    QFETCH(QString, field);
    FormWindow form;
    auto *caption = form.find<QLabel>(QTest::currentDataTag());
    QVERIFY(caption);
    QVERIFY(caption->buddy());
    QCOMPARE(caption->buddy()->objectName(), field);
}

QTEST_MAIN(MainFormTest)
#include "tst_main_form.moc"
