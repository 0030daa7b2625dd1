#pragma once

#include "tests/support/dialog_recorder.h"
#include "tests/usr/fake_module.h"
#include "usr/ip_settings_dialog.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <memory>

/// What the tests of the IP settings dialog share: a module at 192.168.1.7 named "Desk", someone
/// who answers the message boxes, and the dialog.
class IpSettingsFixture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        boxes_ = std::make_unique<DialogRecorder>();
        boxes_->passOverModelessBoxes(); // the notice to wait is the dialog's own to close
        module_ = std::make_unique<FakeModule>();
        module_->answerSearches({{FakeModule::discoveryReply(ipSeven_, mac_, "Desk")}});
        module_->answerLogins({{FakeModule::configuration('\x80')}});
    }

    void cleanup()
    {
        dialog_.reset();
        module_.reset();
        boxes_.reset();
    }

protected:
    static QString text(const char *utf8) { return QString::fromUtf8(utf8); }
    static QByteArray bytes(const char *hex) { return QByteArray::fromHex(hex); }

    static QStringList rounds(int count)
    {
        QStringList order;
        for (int i = 0; i < count; ++i)
            order += {text("search"), text("login")};
        return order;
    }

    /// Short waits; an hour where the test must not get to.
    static IpSettingsTiming quick()
    {
        using namespace std::chrono_literals;
        return {10ms, 1h, 10ms};
    }

    UsrNetwork network() const
    {
        return module_->network(std::chrono::milliseconds(100), std::chrono::milliseconds(5));
    }

    void makeDialog(const char *allocation, IpSettingsTiming timing = quick())
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
    std::unique_ptr<DialogRecorder> boxes_;
    std::unique_ptr<IP_Settings_Dialog> dialog_;
    const QByteArray ipSeven_ = QByteArray("\xc0\xa8\x01\x07", 4);
    const QByteArray ipNine_ = QByteArray("\xc0\xa8\x01\x09", 4);
    const QByteArray mac_ = QByteArray("\x9c\xa5\x25\x1a\x2b\x3c", 6);
};
