#pragma once

#include "ui_main_window.h"

#include <QTest>

/// The form on a bare window of the program's size, as the user's eye meets it.
struct FormWindow
{
    FormWindow()
    {
        ui.setupUi(&window);
        window.setFixedSize(1305, 693);
        window.show();
    }

    void showPage(int index)
    {
        ui.stackedWidget->setCurrentIndex(index);
        QCoreApplication::processEvents(); // lays the page out
    }

    template <typename Widget>
    Widget *find(const char *name) const
    {
        return window.findChild<Widget *>(QLatin1String(name));
    }

    QMainWindow window;
    Ui::TRQ_Mobile_Setter_UI ui;
};
