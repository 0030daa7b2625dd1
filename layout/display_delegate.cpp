#include "layout/display_delegate.h"

#include <QPainter>
#include <QPen>

namespace {
constexpr int lightFrom = 100; // of 255: lighter colours carry black text
constexpr int screenInset = 9; // pixels; clear of the border of a pressed display
constexpr int screenRadius = 6;
constexpr int screenAlpha = 110;
constexpr int focusInset = 6;

QColor readableOn(const QColor &colour)
{
    return qGray(colour.rgb()) >= lightFrom ? Qt::black : Qt::white;
}

void drawScreen(QPainter &painter, const QRect &cell, QColor colour)
{
    colour.setAlpha(screenAlpha);
    painter.setPen(QPen(colour, 2));
    painter.drawRoundedRect(cell.adjusted(screenInset, screenInset, -screenInset, -screenInset),
                            screenRadius, screenRadius);
}

void drawFocus(QPainter &painter, const QRect &cell)
{
    const QRect frame = cell.adjusted(focusInset, focusInset, -focusInset, -focusInset);
    painter.setPen(QPen(Qt::white, 2));
    painter.drawRect(frame);
    painter.setPen(QPen(Qt::black, 2, Qt::DashLine));
    painter.drawRect(frame);
}
} // namespace

void DisplayDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                            const QModelIndex &index) const
{
    QStyleOptionViewItem unfocused = option;
    unfocused.state &= ~QStyle::State_HasFocus;
    QStyledItemDelegate::paint(painter, unfocused, index);

    painter->save();
    painter->setBrush(Qt::NoBrush);
    const QVariant background = index.data(Qt::BackgroundRole);
    if (background.canConvert<QBrush>())
        drawScreen(*painter, option.rect, readableOn(qvariant_cast<QBrush>(background).color()));
    if (option.state & QStyle::State_HasFocus)
        drawFocus(*painter, option.rect);
    painter->restore();
}

void DisplayDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->backgroundBrush.style() == Qt::NoBrush)
        return;
    const QColor text = readableOn(option->backgroundBrush.color());
    option->palette.setColor(QPalette::Text, text);
    option->palette.setColor(QPalette::HighlightedText, text);
}
