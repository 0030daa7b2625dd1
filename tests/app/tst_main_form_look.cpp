#include "form_window.h"

namespace {
const char menuStyle[] =
    "QPushButton {background-color: rgb(189, 189, 189);border: 2.5px solid rgb(77, 156, "
    "238);border-radius: 10px;}"
    "QPushButton:hover {background-color: rgb(77, 156, 238);border: 2.5px solid rgb(189, 189, "
    "189);border-radius: 10px;}"
    "QPushButton:pressed {background-color: rgb(189, 189, 189);border: 2.5px solid rgb(77, 156, "
    "238);border-radius: 10px;}";

const char blackOnWhite[] = "color: rgb(0, 0, 0);\n"
                            "background-color: rgb(255, 255, 255);;\n"
                            "border: 5px solidrgba(255, 255, 255, 0);";

const char blackOnGrey[] = "color: rgb(0, 0, 0);\n"
                           "background-color: rgb(168, 168, 168);";

QString styleOf(const QWidget *widget)
{
    return widget ? widget->styleSheet() : QStringLiteral("no such widget");
}

/// Whether `button`'s text fits between its borders, 3 px on each side.
bool textFits(const QAbstractButton &button)
{
    const QSize text = button.fontMetrics().size(Qt::TextShowMnemonic, button.text());
    return button.text().isEmpty() ||
           (text.width() + 6 <= button.width() && text.height() + 6 <= button.height());
}

/// The widgets that one tabulator key press after another reaches, from `first` on.
QStringList tabOrder(QWidget *first)
{
    QStringList names;
    QWidget *widget = first;
    do {
        const bool isInner =
            widget->objectName().isEmpty() || widget->objectName().startsWith(QLatin1String("qt_"));
        if ((widget->focusPolicy() & Qt::TabFocus) && !isInner)
            names.append(widget->objectName());
        widget = widget->nextInFocusChain();
    } while (widget != first);
    return names;
}
} // namespace

/// The main window's form: its style sheets, and whether it can be read and walked through.
class MainFormLookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theMenuColumnIsReadFromTopToBottom();
    void sheetsOfTheWindow();
    void sheetsOfTheMenu();
    void sheetsOfTheConfigurationPageAreKeptExactly();
    void sheetsOfTheMousePage();
    void sheetsOfTheLayoutPage();
    void wordlessControlsHaveAccessibleNames();
    void theTabOrderFollowsTheEye();
    void nothingIsCutOff_data();
    void nothingIsCutOff();
    void longTextsFromOutsideLeaveTheShapeAlone();
    void textsFromOutsideAreNeverMarkup();
};

void MainFormLookTest::theMenuColumnIsReadFromTopToBottom()
{
    FormWindow form;
    QVERIFY(form.ui.leftMenu_2->width() <= 200);
    QCOMPARE(form.ui.leftMenu_2->maximumWidth(), 200);
    const QList<QList<const char *>> rows = {
        {"label_52"},
        {"label"},
        {"label_2"},
        {"label_26"},
        {"label_10", "pushButton_Connection_Indicator", "pushButton_Refresh"},
        {"label_current_Ip"},
        {"label_name_of_USR"},
        {"ConfigurationBtn"},
        {"pushButton_Mouse_Speed_Settings"},
        {"TopologyAndDisplayBtn"},
        {"label_Select_port"},
        {"comboBox_SelectPort"},
        {"label_11"},
        {"pushButton_ON_Connection", "pushButton_OFF_Connection"},
        {"pushButton_Create_Settings_File"},
        {"pushButton_Load_Settings_File"},
        {"pushButton_Admin_Settings"},
        {"pushButton_Connection_Settings"},
    };
    int bottom = 0;
    for (const auto &row : rows) {
        int right = -1;
        int rowBottom = bottom;
        for (const char *name : row) {
            auto *widget = form.ui.leftMenu_2->findChild<QWidget *>(QLatin1String(name));
            QVERIFY2(widget, name);
            QVERIFY2(widget->y() >= bottom, name);
            QVERIFY2(widget->x() > right, name);
            right = widget->geometry().right();
            rowBottom = qMax(rowBottom, widget->geometry().bottom());
        }
        bottom = rowBottom;
    }
    QVERIFY(bottom <= form.ui.leftMenu_2->height());
    QCOMPARE(form.ui.pushButton_Connection_Indicator->size(), QSize(20, 20));
}

void MainFormLookTest::sheetsOfTheWindow()
{
    FormWindow form;
    const QString sheet = form.window.styleSheet();
    QVERIFY(
        sheet.contains(QStringLiteral("QPushButton {font-size: 14px;height: 45px;width: 100px;}")));
    QVERIFY(sheet.contains(QStringLiteral("QTableWidget {gridline-color: rgb(255, 255, 255);}")));
    QCOMPARE(sheet.count(QStringLiteral("#pushButton_Channel_")), 4);
    QCOMPARE(styleOf(form.ui.centralwidget),
             QStringLiteral("background-color: rgb(210, 210, 210);"));
    QCOMPARE(form.ui.ConfigurationBtn->fontInfo().pixelSize(), 14);
    QCOMPARE(form.ui.ConfigurationBtn->height(), 45);
}

void MainFormLookTest::sheetsOfTheMenu()
{
    FormWindow form;
    for (const char *name :
         {"ConfigurationBtn", "pushButton_Mouse_Speed_Settings", "TopologyAndDisplayBtn",
          "pushButton_ON_Connection", "pushButton_OFF_Connection",
          "pushButton_Create_Settings_File", "pushButton_Load_Settings_File",
          "pushButton_Admin_Settings", "pushButton_Connection_Settings", "pushButton_Refresh"})
        QCOMPARE(styleOf(form.find<QPushButton>(name)), QLatin1String(menuStyle));
    QVERIFY(styleOf(form.ui.pushButton_Connection_Indicator)
                .startsWith(QStringLiteral("background-color: rgb(255, 0, 0);")));
    QVERIFY(styleOf(form.ui.pushButton_Connection_Indicator)
                .contains(QStringLiteral("border-radius: 10px;")));
    QCOMPARE(styleOf(form.ui.comboBox_SelectPort),
             QStringLiteral("background-color: rgb(189,189,189);"));
}

void MainFormLookTest::sheetsOfTheConfigurationPageAreKeptExactly()
{
    FormWindow form;
    for (const char *name :
         {"label_4", "label_18", "label_20", "label_Current_Hotkey_Trigger_Data", "label_5",
          "label_7", "label_3", "comboBox_KM_Control", "comboBox_USB_Control",
          "comboBox_Select_Display_Mode", "comboBox_Select_active_port",
          "comboBox_Enable_or_Disable_Cursor_Roll"})
        QCOMPARE(styleOf(form.find<QWidget>(name)), QLatin1String(blackOnWhite));
    const QString frame = styleOf(form.ui.frame_26);
    QVERIFY(frame.contains(QStringLiteral("border: 2px solid rgb(77, 156, 238);")));
    QVERIFY(frame.contains(QStringLiteral("border-radius: 13px;")));
    const QString terminal = styleOf(form.ui.textEdit_Main_Terminal);
    for (const char *declaration :
         {"background-color: rgb(255, 255, 255);", "border: 2px solid rgb(77, 156, 238);",
          "border-radius: 13px;", "padding-left: 10px;", "padding-top: 10px;",
          "padding-right: 10px;", "padding-bottom: 10px;"})
        QVERIFY2(terminal.contains(QLatin1String(declaration)), declaration);
}

void MainFormLookTest::sheetsOfTheMousePage()
{
    FormWindow form;
    for (const char *name : {"comboBox_number_of_setting", "lineEdit_Mouse_Movement_Name",
                             "lineEdit_Mouse_Movement_X", "lineEdit_Mouse_Movement_Y"})
        QCOMPARE(styleOf(form.find<QWidget>(name)), QLatin1String(blackOnGrey));
    QVERIFY(styleOf(form.ui.label_8).contains(QStringLiteral("color: rgb(0, 0, 0);")));
    QCOMPARE(styleOf(form.ui.label_29), QStringLiteral("color: rgb(0, 120, 215);"));
    for (const char *name : {"label_23", "label_27", "label_28"})
        QVERIFY2(styleOf(form.find<QLabel>(name))
                     .contains(QStringLiteral("border-bottom: 4px solid rgb(77, 156, 238);")),
                 name);
    for (const char *name : {"label_9", "label_17", "label_21", "label_22"})
        QVERIFY2(styleOf(form.find<QLabel>(name))
                     .contains(QStringLiteral("border-right: 4px solid rgb(77, 156, 238);")),
                 name);
}

void MainFormLookTest::sheetsOfTheLayoutPage()
{
    FormWindow form;
    QCOMPARE(
        styleOf(form.ui.tableWidget),
        QStringLiteral("QTableWidget::item:selected {background-color: rgba(239, 255, 96, 50);}\n"
                       "QTableWidget {background-color: rgb(109, 109, 105);\n"
                       "gridline-color: rgb(159, 159, 159);}"));
}

void MainFormLookTest::wordlessControlsHaveAccessibleNames()
{
    FormWindow form;
    QCOMPARE(form.ui.pushButton_Refresh->accessibleName(), QStringLiteral("Refresh"));
    QCOMPARE(form.ui.pushButton_Refresh->toolTip(),
             QStringLiteral("Refresh: read the switch's configuration again"));
    QCOMPARE(form.ui.pushButton_Connection_Indicator->accessibleName(),
             QStringLiteral("Connection status"));
    QCOMPARE(form.ui.pushButton_Connection_Indicator->accessibleDescription(),
             QStringLiteral("Disconnected"));
    QCOMPARE(form.ui.pushButton_Connection_Indicator->toolTip(), QStringLiteral("Disconnected"));
    QCOMPARE(form.ui.label_52->accessibleName(), QStringLiteral("Norvik"));
    for (const char *name :
         {"textEdit_Main_Terminal", "tableWidget", "textEdit", "lineEdit_Command"})
        QVERIFY2(!form.find<QWidget>(name)->accessibleName().isEmpty(), name);
}

void MainFormLookTest::theTabOrderFollowsTheEye()
{
    FormWindow form;
    const char *const names[] = {
        // the menu, top to bottom
        "pushButton_Refresh", "ConfigurationBtn", "pushButton_Mouse_Speed_Settings",
        "TopologyAndDisplayBtn", "comboBox_SelectPort", "pushButton_ON_Connection",
        "pushButton_OFF_Connection", "pushButton_Create_Settings_File",
        "pushButton_Load_Settings_File", "pushButton_Admin_Settings",
        "pushButton_Connection_Settings",
        // the configuration page
        "comboBox_KM_Control", "comboBox_USB_Control", "comboBox_Select_Display_Mode",
        "comboBox_Select_active_port", "comboBox_Enable_or_Disable_Cursor_Roll",
        "pushButton_Factory_Reset", "pushButton_Soft_Reset", "pushButton_ON_Beep",
        "pushButton_OFF_Beep", "textEdit_Main_Terminal",
        // the mouse page
        "comboBox_number_of_setting", "lineEdit_Mouse_Movement_Name", "lineEdit_Mouse_Movement_X",
        "lineEdit_Mouse_Movement_Y", "pushButton_Submit_Custom_Mouse_Movement_Settings",
        "comboBox_mouse_movement_resolution_setting_1",
        "comboBox_mouse_movement_resolution_setting_2",
        "comboBox_mouse_movement_resolution_setting_3",
        "comboBox_mouse_movement_resolution_setting_4",
        // the layout page
        "tableWidget", "pushButtonSubmit",
        // the service page
        "textEdit", "lineEdit_Command", "pushButton_Send_Command"};
    QStringList expected;
    for (const char *name : names)
        expected.append(QString::fromLatin1(name));
    QCOMPARE(tabOrder(form.ui.pushButton_Refresh), expected);
}

void MainFormLookTest::nothingIsCutOff_data()
{
    QTest::addColumn<int>("page");
    QTest::newRow("configuration") << 0;
    QTest::newRow("mouse") << 1;
    QTest::newRow("layout") << 2;
    QTest::newRow("service") << 3;
}

void MainFormLookTest::nothingIsCutOff()
{
    QFETCH(int, page);
    FormWindow form;
    // What an ordinary switch and module put there.
    form.ui.label_current_Ip->setText(QStringLiteral("  IP: 192.168.100.200"));
    form.ui.label_name_of_USR->setText(QStringLiteral("  Name: USR-TCP232-410s"));
    form.ui.label_Current_Hotkey_Trigger_Data->setText(QStringLiteral("Scroll Lock"));
    form.ui.label_Custom_1->setText(QStringLiteral("100 250 OFFICE"));
    form.ui.comboBox_SelectPort->addItem(QStringLiteral("/dev/ttyUSB0"));
    form.showPage(page);

    QVERIFY(form.window.minimumSizeHint().width() <= 1305);
    QVERIFY(form.window.minimumSizeHint().height() <= 693);
    const QRect inside = form.ui.centralwidget->rect();
    int seen = 0;
    const auto widgets = form.ui.centralwidget->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (!widget->isVisible() || widget->objectName().isEmpty())
            continue;
        const QRect place(widget->mapTo(form.ui.centralwidget, QPoint()), widget->size());
        QVERIFY2(inside.contains(place), qPrintable(widget->objectName()));
        const auto *label = qobject_cast<const QLabel *>(widget);
        const auto *combo = qobject_cast<const QComboBox *>(widget);
        if (label || combo) {
            QVERIFY2(widget->width() >= widget->sizeHint().width() &&
                         widget->height() >= widget->sizeHint().height(),
                     qPrintable(widget->objectName()));
            ++seen;
        } else if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
            QVERIFY2(textFits(*button), qPrintable(widget->objectName()));
            ++seen;
        }
    }
    QVERIFY2(seen >= 21, "the menu column alone has 21 of them");
}

void MainFormLookTest::longTextsFromOutsideLeaveTheShapeAlone()
{
    const QString endless(500, QLatin1Char('W'));
    for (const int page : {0, 1}) {
        FormWindow form;
        form.showPage(page);
        const QRect menu = form.ui.leftMenu_2->geometry();
        const QRect frame = form.ui.frame_26->geometry();
        const QRect overview = form.ui.label_Custom_1->geometry();
        const QRect resolution = form.ui.comboBox_mouse_movement_resolution_setting_4->geometry();
        for (QLabel *label : {form.ui.label_current_Ip, form.ui.label_name_of_USR,
                              form.ui.label_Current_Hotkey_Trigger_Data, form.ui.label_Custom_1})
            label->setText(endless);
        form.ui.comboBox_SelectPort->addItem(endless);
        form.ui.comboBox_mouse_movement_resolution_setting_1->addItem(endless);
        form.ui.comboBox_mouse_movement_resolution_setting_1->setCurrentIndex(9);
        form.showPage(page);
        QVERIFY(form.window.minimumSizeHint().width() <= 1305);
        QCOMPARE(form.ui.leftMenu_2->geometry(), menu);
        QCOMPARE(form.ui.frame_26->geometry(), frame);
        QCOMPARE(form.ui.label_Custom_1->geometry(), overview);
        QCOMPARE(form.ui.comboBox_mouse_movement_resolution_setting_4->geometry(), resolution);
    }
}

void MainFormLookTest::textsFromOutsideAreNeverMarkup()
{
    FormWindow form;
    for (const QLabel *label :
         {form.ui.label_current_Ip, form.ui.label_name_of_USR,
          form.ui.label_Current_Hotkey_Trigger_Data, form.ui.label_Custom_1, form.ui.label_Custom_2,
          form.ui.label_Custom_3, form.ui.label_Custom_4})
        QCOMPARE(label->textFormat(), Qt::PlainText);
}

QTEST_MAIN(MainFormLookTest)
#include "tst_main_form_look.moc"
