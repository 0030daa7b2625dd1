#include "log/notices.h"

#include "log/event_log.h"
#include "log/window_dress.h"

#include <QFont>
#include <cstdlib>

namespace {
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
}
} // namespace

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
    QMessageBox::warning(nullptr, title, text, QMessageBox::Ok);
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
