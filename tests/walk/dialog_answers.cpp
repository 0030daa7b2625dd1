#include "dialog_answers.h"

#include "connection/select_connection_method_dialog.h"
#include "connection/select_hardware_dialog.h"
#include "readback/yes_no_dialog.h"
#include "usr/change_setting_for_usr_dialog.h"
#include "usr/credentials_dialog.h"
#include "usr/ip_settings_dialog.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>

namespace {
constexpr int longestThought = 60;     // ms
constexpr int patience = 150;          // ms until a dialog that has stayed is answered again
constexpr int answersBeforeWeary = 12; // of one step; from then on dialogs are closed
constexpr int answersOfAnObligingOne = 60;

/// The messages at whose end the program ends, as it should when nobody answers.
bool endsTheProgram(const QString &text)
{
    static const QStringList texts = {
        QStringLiteral("No hardware online"), QStringLiteral("No connection"),
        QStringLiteral("No available port"),
        QStringLiteral("Check if the device is on the same network as the PC")};
    return texts.contains(text);
}

QList<QDialog *> shownDialogs()
{
    QList<QDialog *> dialogs;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        auto *dialog = qobject_cast<QDialog *>(window);
        if (dialog != nullptr && dialog->isVisible())
            dialogs.append(dialog);
    }
    return dialogs;
}

/// Whether the user can get at `dialog`: no other one stands in front of it.
bool isReachable(const QDialog &dialog)
{
    const QWidget *const front = QApplication::activeModalWidget();
    return front == nullptr || front == &dialog || front->isAncestorOf(&dialog);
}
} // namespace

DialogAnswers::DialogAnswers(Road road, const Desk &desk, const QDir &folder)
    : road_(road), desk_(desk), folder_(folder)
{
    connect(&poll_, &QTimer::timeout, this, &DialogAnswers::look);
    poll_.start(4);
}

void DialogAnswers::follow(std::uint64_t seed)
{
    chance_ = Chance(seed);
    answersOfStep_ = 0;
}

bool DialogAnswers::blocksWindow()
{
    return QApplication::activeModalWidget() != nullptr;
}

QString DialogAnswers::shown()
{
    const QList<QDialog *> dialogs = shownDialogs();
    if (dialogs.isEmpty())
        return {};
    const auto *box = qobject_cast<QMessageBox *>(dialogs.first());
    return QString::fromLatin1(dialogs.first()->metaObject()->className()) + QStringLiteral(": ") +
           (box != nullptr ? box->text() : dialogs.first()->windowTitle());
}

void DialogAnswers::look()
{
    const QList<QDialog *> dialogs = shownDialogs();
    for (auto met = meetings_.begin(); met != meetings_.end();)
        met = dialogs.contains(met.key()) ? std::next(met) : meetings_.erase(met);
    for (QDialog *dialog : dialogs) {
        Meeting &meeting = meetings_[dialog];
        if (!meeting.since.isValid()) {
            meeting.since.start();
            meeting.wait = isObliging_ ? 0 : chance_.below(longestThought);
        }
        if (meeting.isQueued || meeting.since.elapsed() < meeting.wait || !isReachable(*dialog))
            continue;
        meeting.isQueued = true;
        // Not from within the timer: it does not fire again before its slot has returned, and an
        // answer may run into the next dialog.
        QMetaObject::invokeMethod(
            this,
            [this, shown = QPointer<QDialog>(dialog)] {
                if (!shown)
                    return;
                if (shown->isVisible() && isReachable(*shown))
                    answer(*shown);
                if (shown && meetings_.contains(shown)) {
                    meetings_[shown].isQueued = false;
                    meetings_[shown].since.start();
                    meetings_[shown].wait = patience;
                }
            },
            Qt::QueuedConnection);
    }
}

void DialogAnswers::answer(QDialog &dialog)
{
    ++answered_;
    const bool isWeary =
        ++answersOfStep_ > (isObliging_ ? answersOfAnObligingOne : answersBeforeWeary);
    if (auto *box = qobject_cast<QMessageBox *>(&dialog))
        answerBox(*box);
    else if (isWeary)
        dialog.reject();
    else if (auto *file = qobject_cast<QFileDialog *>(&dialog))
        answerFile(*file);
    else if (auto *method = dynamic_cast<Select_connection_method_Dialog *>(&dialog))
        answerMethod(*method);
    else if (auto *hardware = dynamic_cast<Select_hardware_Dialog *>(&dialog))
        answerHardware(*hardware);
    else if (auto *login = dynamic_cast<Credentials_Dialog *>(&dialog))
        answerLogin(*login);
    else if (auto *addresses = dynamic_cast<IP_Settings_Dialog *>(&dialog))
        answerAddresses(*addresses);
    else if (auto *admin = dynamic_cast<Change_setting_for_USR_Dialog *>(&dialog))
        answerAdmin(*admin);
    else if (auto *question = dynamic_cast<Yes_No_Dialog *>(&dialog))
        answerQuestion(*question);
    else
        dialog.reject();
}

void DialogAnswers::answerBox(QMessageBox &box)
{
    const QString text = box.text();
    give(QStringLiteral("notice \"%1\"").arg(text));
    if (endsTheProgram(text) && onEnd)
        onEnd(text);
    const QList<QAbstractButton *> buttons = box.buttons();
    if (buttons.size() == 1)
        likes(80) ? buttons.first()->click() : box.reject();
    else if (QAbstractButton *yes = box.button(QMessageBox::Yes); yes != nullptr && likes(70))
        yes->click();
    else
        box.reject();
}

void DialogAnswers::answerFile(QFileDialog &dialog)
{
    ++fileDialogs_;
    if (!likes(88)) {
        give(QStringLiteral("file dialog: cancelled"));
        dialog.reject();
        return;
    }
    give(QStringLiteral("file dialog: ") + file_);
    type(dialog, "fileNameEdit", folder_.filePath(file_));
    auto *buttons = dialog.findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    const bool saves = dialog.acceptMode() == QFileDialog::AcceptSave;
    QPushButton *const button =
        buttons->button(saves ? QDialogButtonBox::Save : QDialogButtonBox::Open);
    if (button != nullptr && button->isEnabled())
        button->click();
    else
        dialog.reject();
}

void DialogAnswers::answerMethod(Select_connection_method_Dialog &dialog)
{
    if (!likes(88)) {
        give(QStringLiteral("method: closed"));
        dialog.reject();
        return;
    }
    const bool byNetwork = road_ == Road::Udp && likes(75);
    dialog
        .findChild<QRadioButton *>(byNetwork ? QStringLiteral("radioButton_TCP_IP")
                                             : QStringLiteral("radioButton_RS232"))
        ->setChecked(true);
    press(dialog, "pushButton_continue");
}

void DialogAnswers::answerHardware(Select_hardware_Dialog &dialog)
{
    auto *list = dialog.findChild<QComboBox *>(QStringLiteral("comboBox_Hardware"));
    if (list->count() > 0)
        list->setCurrentIndex(chance_.below(list->count()));
    if (!likes(85) && chance_.oneIn(2))
        press(dialog, "pushButton_Refresh");
    else if (!likes(90))
        dialog.reject();
    else
        press(dialog, "pushButton_Continue");
}

void DialogAnswers::answerLogin(Credentials_Dialog &dialog)
{
    const auto *label = dialog.findChild<QLabel *>(QStringLiteral("label_current_ip"));
    const SwitchPicture module = desk_.lastSeen(desk_.unitAt(label->text()));
    const QString user = QString::fromUtf8(module["Module username"]);
    const QString secret = QString::fromUtf8(module["Module password"]);
    if (user.isEmpty() || secret.isEmpty() || !likes(90)) {
        give(QStringLiteral("login: closed"));
        dialog.reject();
        return;
    }
    type(dialog, "lineEdit_username", likes(90) ? user : QStringLiteral("nobody"));
    type(dialog, "lineEdit_password", likes(90) ? secret : QStringLiteral("too long"));
    press(dialog, "pushButton_ip_allocation");
}

void DialogAnswers::answerAddresses(IP_Settings_Dialog &dialog)
{
    const auto *connectButton =
        dialog.findChild<QPushButton *>(QStringLiteral("pushButton_Connect"));
    const auto *staticButton =
        dialog.findChild<QRadioButton *>(QStringLiteral("radioButton_Static"));
    if (!connectButton->isEnabled()) {
        if (chance_.oneIn(30)) { // in the middle of an apply
            give(QStringLiteral("IP settings: closed"));
            dialog.reject();
        }
        return;
    }
    if (likes(70)) {
        press(dialog, "pushButton_Connect");
        return;
    }
    if (chance_.oneIn(4)) {
        give(QStringLiteral("IP settings: closed"));
        dialog.reject();
        return;
    }
    const bool isStatic = chance_.oneIn(2);
    press(dialog, isStatic ? "radioButton_Static" : "radioButton_DHCP");
    if (staticButton->isChecked()) {
        const auto *label = dialog.findChild<QLabel *>(QStringLiteral("label_IP"));
        const int first = desk_.unitAt(label->text()) == 2 ? 8 : 7;
        type(dialog, "lineEdit_IPv4_Address",
             chance_.oneIn(8) ? QStringLiteral("192.0.2")
                              : QStringLiteral("192.0.2.%1").arg(first + 2 * chance_.below(3)));
        type(dialog, "lineEdit_Subnet_Mask", QStringLiteral("255.255.255.0"));
        type(dialog, "lineEdit_Default_Gateway", QStringLiteral("192.0.2.254"));
    }
    press(dialog, "pushButton_Apply_IP");
}

void DialogAnswers::answerAdmin(Change_setting_for_USR_Dialog &dialog)
{
    static const QStringList names = {
        QString(), QStringLiteral("Meeting Room"), QStringLiteral("SIXTEEN-LETTERS!"),
        QStringLiteral("seventeen letters"), QStringLiteral("B\u00dcRO")};
    static const QStringList credentials = {QStringLiteral("admin"),  QStringLiteral("other"),
                                            QStringLiteral("sixsix"), QStringLiteral("admin"),
                                            QStringLiteral("admin"),  QStringLiteral("seven77")};
    if (isObliging_ || chance_.oneIn(4)) {
        give(QStringLiteral("admin settings: closed"));
        dialog.reject();
        return;
    }
    type(dialog, "lineEdit_Name", chance_.of(names));
    type(dialog, "lineEdit_Username", chance_.oneIn(20) ? QString() : chance_.of(credentials));
    type(dialog, "lineEdit_Password", chance_.oneIn(20) ? QString() : chance_.of(credentials));
    press(dialog, "pushButton_Apply");
}

void DialogAnswers::answerQuestion(Yes_No_Dialog &dialog)
{
    if (chance_.oneIn(6)) {
        give(QStringLiteral("question: closed"));
        dialog.reject();
        return;
    }
    press(dialog, likes(60) ? "pushButton_OK" : "pushButton_Cancel");
}

void DialogAnswers::press(QWidget &dialog, const char *button)
{
    give(QString::fromLatin1(dialog.metaObject()->className()) + QStringLiteral(": ") +
         QString::fromLatin1(button));
    dialog.findChild<QAbstractButton *>(QString::fromLatin1(button))->click();
}

void DialogAnswers::type(QWidget &dialog, const char *field, const QString &text)
{
    dialog.findChild<QLineEdit *>(QString::fromLatin1(field))->setText(text);
}

void DialogAnswers::give(const QString &what)
{
    if (onAnswer)
        onAnswer(what);
}
