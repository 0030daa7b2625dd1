#include "log/notices.h"

#include "log/event_log.h"
#include "log/window_dress.h"

#include <QApplication>
#include <QFont>
#include <QPointer>
#include <QWindow>
#include <cstdlib>

namespace {
QPointer<QWidget> noticeWindow; // NOLINT(cert-err58-cpp): a null pointer cannot throw

/// Not a child of the window: it would take over the window's style sheet.
void keepOverWindow(QMessageBox &box)
{
    box.setAttribute(Qt::WA_QuitOnClose, false);
    const QWidget *const modal = QApplication::activeModalWidget();
    const QWidget *const owner = modal != nullptr ? modal->window() : noticeWindow.data();
    if (box.parentWidget() != nullptr || owner == nullptr || owner == &box ||
        owner->windowHandle() == nullptr)
        return;
    (void)box.winId(); // makes the handle
    box.windowHandle()->setTransientParent(owner->windowHandle());
}

void dressNotice(const QString &text, QMessageBox::Icon icon, QMessageBox &box)
{
    box.setFont(QFont(QStringLiteral("Segoe UI"), 12));
    // Deliberate: warnings and errors stand under this title too.
    box.setWindowTitle(QStringLiteral("Information"));
    box.setWindowIcon(applicationIcon());
    box.setIcon(icon);
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    box.setStandardButtons(QMessageBox::Ok);
    keepOverWindow(box);
}
} // namespace

void setNoticeWindow(QWidget *window)
{
    noticeWindow = window;
}

void showNotice(const QString &text, QMessageBox::Icon icon, QMessageBox &box)
{
    dressNotice(text, icon, box);
    box.setModal(false); // a message box blocks the whole program even under show() otherwise
    box.show();
}

void showNoticeModal(const QString &text, QMessageBox::Icon icon)
{
    QMessageBox box;
    dressNotice(QString::fromUtf8(text.toUtf8()), icon, box);
    box.exec();
}

void showWarningBox(const QString &title, const QString &text)
{
    QMessageBox box(QMessageBox::Warning, title, text, QMessageBox::Ok);
    keepOverWindow(box);
    box.exec();
}

void warnAndExit(const QString &text)
{
    showWarningBox(QStringLiteral(" "), text);
    std::exit(1); // NOLINT(concurrency-mt-unsafe): the program has one thread
}

void reportFailure(const char *message)
{
    writeLog(message);
    showNoticeModal(QString::fromUtf8(message), QMessageBox::Warning);
}
