#pragma once

#include <QStyledItemDelegate>

/// Paints the displays of the layout grid: text that stands out from the colour, a screen's
/// outline, and a frame around the cell that has the keyboard's focus.
class DisplayDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};
