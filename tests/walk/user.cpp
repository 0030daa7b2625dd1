#include "user.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

namespace {
using std::chrono::milliseconds;

Qt::Key keyNamed(const QByteArray &name)
{
    static const QHash<QByteArray, Qt::Key> keys = {
        {"Tab", Qt::Key_Tab},       {"Backtab", Qt::Key_Backtab}, {"Down", Qt::Key_Down},
        {"Up", Qt::Key_Up},         {"Left", Qt::Key_Left},       {"Right", Qt::Key_Right},
        {"Home", Qt::Key_Home},     {"End", Qt::Key_End},         {"Space", Qt::Key_Space},
        {"Return", Qt::Key_Return}, {"Escape", Qt::Key_Escape},   {"1", Qt::Key_1}};
    return keys.value(name, Qt::Key_unknown);
}

/// What choosing item `index` of the list `combo` sends; nothing for lists that send nothing.
QByteArray commandOf(const QByteArray &combo, int index)
{
    static const QByteArray resolution = "comboBox_mouse_movement_resolution_setting_";
    if (combo == "comboBox_KM_Control")
        return "//c" + QByteArray::number(index + 1);
    if (combo == "comboBox_USB_Control")
        return "//u" + QByteArray::number(index + 1);
    if (combo == "comboBox_Select_active_port")
        return "//D" + QByteArray::number(index + 2);
    if (combo == "comboBox_Select_Display_Mode")
        return index == 0 ? "//ks" : "//km";
    if (combo == "comboBox_Enable_or_Disable_Cursor_Roll")
        return index == 0 ? "//o0" : "//o1";
    if (combo.startsWith(resolution))
        return "//CE " + combo.mid(resolution.size()) + " " + QByteArray::number(index + 1);
    return {};
}
} // namespace

User::User(Desk &desk, CommandWatch &watch, DialogAnswers &answers, const QDir &folder,
           const WindowSettings &settings)
    : desk_(desk), watch_(watch), answers_(answers), folder_(folder), settings_(settings)
{
    qputenv("PELORA_EXTRA_SERIAL_PORTS", desk_.portList());
}

WindowSettings User::quickSettings()
{
    WindowSettings settings;
    settings.networkLink.noAnswer = milliseconds(300);
    settings.panel.handshakeWatchdog = milliseconds(700);
    settings.wizard.network.afterBroadcast = milliseconds(30);
    settings.wizard.network.collection = milliseconds(30);
    settings.wizard.ipSettings = {milliseconds(5), milliseconds(240), milliseconds(180)};
    settings.readBack.scrollToEnd = milliseconds(10);
    settings.readBack.takeOver = milliseconds(100);
    settings.readBack.layoutLoad = milliseconds(100);
    settings.readBack.refreshDisable = milliseconds(5);
    settings.readBack.refreshEnable = milliseconds(170);
    settings.generalSettings.serialReadAfterReset = milliseconds(250);
    settings.generalSettings.networkReadAfterReset = milliseconds(135);
    settings.mouse.readAfterSubmit = milliseconds(80);
    settings.settingsFile.secondPart = milliseconds(200);
    return settings;
}

template <typename Widget>
Widget &User::find(const char *name) const
{
    auto *found = window_->findChild<Widget *>(QString::fromLatin1(name));
    if (found == nullptr)
        qFatal("the window has no %s", name);
    return *found;
}

void User::openWindow()
{
    window_ = std::make_unique<KM_Configuration_Tool_Norvik>(nullptr, settings_);
    watchControls();
    window_->show();
    watch_.choose(chosenUnit());
    watch_.noteTrouble();
}

void User::watchControls()
{
    const auto combos = window_->findChildren<QComboBox *>();
    for (QComboBox *combo : combos) {
        // Said by a list when its user picks something, and never when the program does.
        const QByteArray name = combo->objectName().toLatin1();
        QObject::connect(combo, &QComboBox::activated, window_.get(),
                         [this, name](int index) { announceChoice(name, index); });
        QObject::connect(combo, &QComboBox::currentIndexChanged, window_.get(),
                         [this, name] { changed_.insert(name); });
    }
    const auto buttons = window_->findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        const QByteArray name = button->objectName().toLatin1();
        QObject::connect(button, &QPushButton::released, window_.get(),
                         [this, name] { announceButton(name); });
    }
}

void User::announceChoice(const QByteArray &combo, int index)
{
    if (combo == "comboBox_SelectPort")
        watch_.noteTrouble();
    watch_.choose(chosenUnit());
    const QByteArray command = commandOf(combo, index);
    if (command.isEmpty())
        return;
    if (changed_.remove(combo) && isGreen() && !desk_.hasFault())
        watch_.announceSurely(command);
    else
        watch_.announce(command);
}

void User::announceButton(const QByteArray &button)
{
    watch_.choose(chosenUnit());
    const auto announce = [this](const QByteArray &command) {
        if (isGreen() && !desk_.hasFault())
            watch_.announceSurely(command);
        else
            watch_.announce(command);
    };
    if (button == "pushButton_ON_Connection" || button == "pushButton_OFF_Connection" ||
        button == "pushButton_Connection_Settings")
        watch_.noteTrouble();
    else if (button == "pushButton_ON_Beep")
        announce("//B1");
    else if (button == "pushButton_OFF_Beep")
        announce("//B0");
    else if (button == "pushButton_Soft_Reset")
        announce("//R");
    else if (button == "pushButton_Factory_Reset")
        watch_.announce("//F");
    else if (button == "pushButton_Load_Settings_File")
        announceFile(file_);
    if (button == "pushButtonSubmit") {
        watch_.announce("//FF0*");
        watch_.announce("//D4"); // all are active while the layout is written down
        watch_.announce("//D*");
    } else if (button == "pushButton_Submit_Custom_Mouse_Movement_Settings") {
        const auto text = [this](const char *field) {
            return asPrinted(find<QLineEdit>(field).text().toUtf8());
        };
        const int setting = find<QComboBox>("comboBox_number_of_setting").currentIndex() + 1;
        watch_.announce("//MM C" + QByteArray::number(setting) + " " +
                        text("lineEdit_Mouse_Movement_X").trimmed() + " " +
                        text("lineEdit_Mouse_Movement_Y").trimmed() + " " +
                        text("lineEdit_Mouse_Movement_Name") + " ");
    }
}

void User::announceFile(const QString &name)
{
    QFile file(folder_.filePath(name));
    if (name.isEmpty() || !file.open(QIODevice::ReadOnly))
        return;
    const QByteArrayList lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const qsizetype command = line.indexOf(": //");
        if (command > 0 && !line.startsWith("Data"))
            watch_.announce(asPrinted(line.mid(command + 2)));
    }
}

bool User::act(const Step &step)
{
    answers_.follow(step.answers);
    changed_.clear();
    file_ = QStringLiteral("a.txt");
    if (step.action == "save" || step.action == "load")
        file_ = QString::fromLatin1(step.rest);
    answers_.setFile(file_);
    const bool done = doStep(step);
    watch_.choose(chosenUnit());
    return done;
}

bool User::doStep(const Step &step)
{
    if (step.action == "press") {
        if (step.rest == "pushButton_Connection_Settings")
            (void)desk_.look(); // the credentials that are to be typed
        return press(step.rest.constData());
    }
    if (step.action == "choose")
        return choose(step.word(0).constData(), step.number(1));
    if (step.action == "custom")
        return setCustom(step);
    if (step.action == "move")
        return move(step);
    if (step.action == "drop")
        return drop(step);
    if (step.action == "save")
        return press("pushButton_Create_Settings_File");
    if (step.action == "load")
        return press("pushButton_Load_Settings_File");
    if (step.action == "keys")
        return pressKeys(step);
    if (step.action == "restart") {
        watch_.noteTrouble();
        closeWindow();
        (void)desk_.look();
        openWindow();
        return true;
    }
    qFatal("there is no step \"%s\"", step.action.constData());
}

/// Shows the page on which `widget` stands; whether the user can use it then.
bool User::bringUp(QWidget &widget)
{
    static constexpr const char *pages[] = {"ConfigurationBtn", "pushButton_Mouse_Speed_Settings",
                                            "TopologyAndDisplayBtn"};
    for (const char *page : pages) {
        auto &button = find<QPushButton>(page);
        if (!widget.isVisible() && widget.isEnabled() && button.isEnabled())
            button.click();
    }
    return widget.isVisible() && widget.isEnabled();
}

bool User::press(const char *button)
{
    auto &target = find<QPushButton>(button);
    if (!bringUp(target))
        return false;
    QTest::mouseClick(&target, Qt::LeftButton);
    return true;
}

bool User::choose(const char *combo, int index)
{
    auto &target = find<QComboBox>(combo);
    if (!bringUp(target) || index >= target.count())
        return false;
    // As an item of an open list does it.
    watch_.choose(chosenUnit());
    target.setCurrentIndex(index);
    Q_EMIT target.activated(index);
    return true;
}

bool User::setCustom(const Step &step)
{
    const QList<QByteArray> parts = step.rest.split('|');
    if (!choose("comboBox_number_of_setting", parts.value(0).toInt()))
        return false;
    find<QLineEdit>("lineEdit_Mouse_Movement_X").setText(QString::fromUtf8(parts.value(1)));
    find<QLineEdit>("lineEdit_Mouse_Movement_Y").setText(QString::fromUtf8(parts.value(2)));
    find<QLineEdit>("lineEdit_Mouse_Movement_Name").setText(QString::fromUtf8(parts.value(3)));
    return press("pushButton_Submit_Custom_Mouse_Movement_Settings");
}

/// "move 3 Left": the display of channel 3 with Ctrl and an arrow key.
bool User::move(const Step &step)
{
    auto &table = find<QTableWidget>("tableWidget");
    if (!bringUp(table))
        return false;
    const QString label = QStringLiteral("Channel %1").arg(step.number(0));
    const auto items = table.findItems(label, Qt::MatchStartsWith);
    if (items.isEmpty())
        return false;
    table.setFocus();
    table.setCurrentItem(items.first());
    QTest::keyClick(&table, keyNamed(step.word(1)), Qt::ControlModifier);
    return true;
}

/// "drop 0 1 2 2": from row 0, column 1 to row 2, column 2, pressed with the mouse and put down as
/// Qt's own drag and drop changes the table.
bool User::drop(const Step &step)
{
    auto &table = find<QTableWidget>("tableWidget");
    if (!bringUp(table))
        return false;
    const QModelIndex from = table.model()->index(step.number(0), step.number(1));
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, table.visualRect(from).center());
    if (!table.dragEnabled() || table.item(from.row(), from.column()) == nullptr)
        return false;
    QTableWidgetItem *const item = table.takeItem(from.row(), from.column());
    table.setItem(step.number(2), step.number(3), item);
    return true;
}

bool User::pressKeys(const Step &step)
{
    const QList<QByteArray> names = step.rest.split(' ');
    for (const QByteArray &name : names) {
        QWidget *const focus = window_->focusWidget();
        if (focus == nullptr || DialogAnswers::blocksWindow())
            return false;
        QTest::keyClick(focus, keyNamed(name));
    }
    return true;
}

bool User::isEnabled(const char *widget) const
{
    return find<QWidget>(widget).isEnabled();
}

bool User::isGreen() const
{
    return find<QPushButton>("pushButton_Connection_Indicator")
        .styleSheet()
        .contains(QStringLiteral("green"));
}

bool User::isOnNetwork() const
{
    return find<QLabel>("label_current_Ip").isVisibleTo(window_.get()) &&
           !moduleAddress().isEmpty();
}

QString User::moduleAddress() const
{
    return find<QLabel>("label_current_Ip").text().section(QStringLiteral("IP: "), 1);
}

int User::chosenUnit() const
{
    return desk_.unitAt(isOnNetwork() ? moduleAddress()
                                      : find<QComboBox>("comboBox_SelectPort").currentText());
}

QString User::terminal() const
{
    return find<QTextEdit>("textEdit_Main_Terminal").toPlainText();
}

QString User::lastLine() const
{
    QTextBlock block = find<QTextEdit>("textEdit_Main_Terminal").document()->lastBlock();
    if (block.text().isEmpty())
        block = block.previous();
    const QStringList lines = block.text().split(QChar::LineSeparator, Qt::SkipEmptyParts);
    return lines.value(lines.size() - 1);
}

void User::clearTerminal()
{
    find<QTextEdit>("textEdit_Main_Terminal").clear();
}
