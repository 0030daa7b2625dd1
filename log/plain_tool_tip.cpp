#include "log/plain_tool_tip.h"

#include <QApplication>
#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>
#include <QWidget>

namespace {
/// Takes a styled widget's tip out of sight: one that is there is used again, with its sheet.
void hideTipsOfWidgets()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window->windowType() == Qt::ToolTip && window->parentWidget() != nullptr)
            window->hide();
    }
}
} // namespace

QString plainTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

bool PlainToolTip::eventFilter(QObject *watched, QEvent *event)
{
    auto *widget = qobject_cast<QWidget *>(watched);
    if (widget == nullptr || event->type() != QEvent::ToolTip)
        return QObject::eventFilter(watched, event);
    const QString tip = widget->toolTip();
    hideTipsOfWidgets();
    // Without a widget: it is from there that the tip would take its style sheet.
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), plainTip(tip), nullptr, {},
                       widget->toolTipDuration());
    return true;
}
