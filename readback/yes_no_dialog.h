#pragma once

#include <QDialog>
#include <QString>
#include <memory>

namespace Ui {
class Yes_No_Dialog;
}

/// A small modal question with two answers. Enter gives the second, which changes nothing, unless
/// the user has moved to the first.
class Yes_No_Dialog : public QDialog
{
    Q_OBJECT

public:
    Yes_No_Dialog(const QString &question, const QString &okText, const QString &cancelText,
                  QWidget *parent = nullptr);
    ~Yes_No_Dialog() override;

    /// "OK" or "Cancel" by the button that was pressed, whatever its text; empty when the dialog
    /// was closed otherwise.
    const QString &answer() const { return answer_; }

public Q_SLOTS:
    void on_pushButton_OK_clicked();
    void on_pushButton_Cancel_clicked();

private:
    std::unique_ptr<Ui::Yes_No_Dialog> ui_;
    QString answer_;
};
