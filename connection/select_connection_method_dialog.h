#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class Select_connection_method_Dialog;
}

/// Asks how the switch is reached. Kept for the program's life and shown again on demand; it keeps
/// the last choice. Closing it, Escape included, is no choice.
class Select_connection_method_Dialog : public QDialog
{
    Q_OBJECT

public:
    /// Opens the event log as well.
    explicit Select_connection_method_Dialog(QWidget *parent = nullptr);
    ~Select_connection_method_Dialog() override;

    bool isTcpIpSelected() const { return choice_ == Choice::TcpIp; }
    bool isRs232Selected() const { return choice_ == Choice::Rs232; }
    /// Whether it was closed without a choice when it was last shown.
    bool isClosed() const { return closed_; }

public Q_SLOTS:
    void on_pushButton_continue_clicked();

protected:
    void showEvent(QShowEvent *event) override;

private:
    enum class Choice { None, TcpIp, Rs232 };

    std::unique_ptr<Ui::Select_connection_method_Dialog> ui_;
    Choice choice_ = Choice::None;
    bool closed_ = false;
};
