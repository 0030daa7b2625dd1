#include "app/page_navigation.h"

#include <QPushButton>
#include <QStackedWidget>
#include <utility>

PageNavigation::PageNavigation(QStackedWidget &pages, QList<QPushButton *> buttons)
    : pages_(pages), buttons_(std::move(buttons))
{
}

void PageNavigation::showPage(int index)
{
    buttons_.at(index)->setStyleSheet(
        QStringLiteral("background-color: rgb(77, 156, 238); border: 2.5px solid rgb(189, 189, "
                       "189); border-radius: 10px"));
    for (int other = 0; other < buttons_.size(); ++other) {
        if (other != index)
            setMenuButtonStyle(*buttons_.at(other));
    }
    pages_.setCurrentIndex(index);
}

void PageNavigation::setMenuButtonStyle(QPushButton &button)
{
    button.setStyleSheet(QStringLiteral(
        "QPushButton {background-color: rgb(189, 189, 189);border: 2.5px solid rgb(77, 156, "
        "238);border-radius: 10px;}QPushButton:hover {background-color: rgb(77, 156, "
        "238);border-radius: 10px;}QPushButton:pressed {background-color: rgb(189, 189, "
        "189);border: 2.5px solid rgb(77, 156, 238);border-radius: 10px;}"));
}
