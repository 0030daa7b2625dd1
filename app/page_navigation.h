#pragma once

#include <QList>

class QPushButton;
class QStackedWidget;

/// The left menu: which page is shown, and which menu button says so.
class PageNavigation
{
public:
    /// `buttons` select the pages of `pages` with the same (zero-based) index.
    PageNavigation(QStackedWidget &pages, QList<QPushButton *> buttons);

    /// Marks the page's button, gives the others the normal style and shows the page.
    void showPage(int index);

    /// The normal style of a menu button.
    static void setMenuButtonStyle(QPushButton &button);

private:
    QStackedWidget &pages_;
    QList<QPushButton *> buttons_;
};
