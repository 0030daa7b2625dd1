#pragma once

#include <QDialog>
#include <QString>
#include <memory>

namespace Ui {
class Select_KM_type_Dialog;
}

/// Asks for the model of the switch. The connection wizard does not show it: all models are found
/// the same way.
class Select_KM_type_Dialog : public QDialog
{
    Q_OBJECT

public:
    explicit Select_KM_type_Dialog(QWidget *parent = nullptr);
    ~Select_KM_type_Dialog() override;

    /// "Velo", "Orca" or "Zen"; empty until Continue was pressed with one of them chosen.
    const QString &chosenModel() const { return chosenModel_; }

public Q_SLOTS:
    void on_pushButton_Continue_clicked();

private:
    std::unique_ptr<Ui::Select_KM_type_Dialog> ui_;
    QString chosenModel_;
};
