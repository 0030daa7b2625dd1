#include "log/plain_tool_tip.h"

#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>
#include <QWidget>

bool PlainToolTip::eventFilter(QObject *watched, QEvent *event)
{
    auto *widget = qobject_cast<QWidget *>(watched);
    if (widget == nullptr || event->type() != QEvent::ToolTip)
        return QObject::eventFilter(watched, event);
    const QString tip = widget->toolTip();
    // Without a widget: it is from there that the tip would take its style sheet.
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
                       Qt::mightBeRichText(tip) ? Qt::convertFromPlainText(tip) : tip, nullptr, {},
                       widget->toolTipDuration());
    return true;
}
