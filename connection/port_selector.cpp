#include "connection/port_selector.h"

#include "log/plain_tool_tip.h"

#include <QHelpEvent>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QToolTip>

QString PortSelector::shownText() const
{
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QRect field =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    return fontMetrics().elidedText(currentText(), Qt::ElideLeft, field.width());
}

void PortSelector::setNotes(const QHash<QString, QString> &notes)
{
    for (int i = 0; i < count(); ++i) {
        const QString note = notes.value(itemText(i));
        if (!note.isEmpty())
            setItemData(i, plainTip(itemText(i) + QLatin1Char('\n') + note), Qt::ToolTipRole);
    }
}

bool PortSelector::event(QEvent *event)
{
    // Asked for when it is needed: the list is filled with its signals blocked.
    if (event->type() == QEvent::ToolTip) {
        const QString tip = currentData(Qt::ToolTipRole).toString();
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(),
                           tip.isEmpty() ? plainTip(currentText()) : tip, this);
        return true;
    }
    return QComboBox::event(event);
}

void PortSelector::paintEvent(QPaintEvent * /*event*/)
{
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.currentText = shownText();
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}
