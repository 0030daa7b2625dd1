#pragma once

#include "layout/layout_grid.h"

#include <QHeaderView>
#include <QTableWidget>

/// A layout grid in a window of its own, wired as the main window wires it.
class GridBench
{
public:
    GridBench()
    {
        table.setGeometry(0, 0, 800, 480);
        table.horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
        table.verticalHeader()->setSectionResizeMode(QHeaderView::Stretch);
        table.horizontalHeader()->hide();
        table.verticalHeader()->hide();
        table.setEditTriggers(QAbstractItemView::NoEditTriggers);
        QObject::connect(&table, &QTableWidget::cellPressed, &grid, &LayoutGrid::cellPressed);
        QObject::connect(&table, &QTableWidget::cellChanged, &grid, &LayoutGrid::cellChanged);
        grid.showInitialLayout();
    }

    /// What the cells show, row by row: the channel's digit, "-" behind it when it is inactive,
    /// "." for an empty cell. The initial layout is "1234/..../..../....".
    QString picture() const
    {
        QStringList rows;
        for (int row = 0; row < 4; ++row) {
            QString line;
            for (int column = 0; column < 4; ++column)
                line += cellPicture(table.item(row, column));
            rows.append(line);
        }
        return rows.join(QLatin1Char('/'));
    }

    /// The current layout in its order: "channel@row,column" with "-" for gray.
    QString model() const
    {
        QStringList cells;
        for (const DisplayCell &cell : grid.layout())
            cells.append(QStringLiteral("%1@%2,%3%4")
                             .arg(cell.label.mid(8))
                             .arg(cell.row)
                             .arg(cell.column)
                             .arg(cell.brush == inactiveBrush() ? QStringLiteral("-") : QString()));
        return cells.join(QLatin1Char(' '));
    }

    /// Whether the grid heeds a user's move, as it does whenever the program is not drawing it. The
    /// display is moved there and back.
    bool heedsMoves()
    {
        const DisplayCell before = grid.layout().front();
        const GridPosition from{before.row, before.column};
        GridPosition to;
        while (table.item(to.row, to.column) != nullptr)
            to = to.column < 3 ? GridPosition{to.row, to.column + 1} : GridPosition{to.row + 1, 0};
        const QString shown = model();
        moveTargetFirst(from, to);
        const bool heeded = model() != shown;
        moveTargetFirst(to, from);
        return heeded;
    }

    /// A move as Qt 6.4 does it: the source's item is taken first.
    void moveSourceFirst(GridPosition from, GridPosition to)
    {
        table.setItem(to.row, to.column, table.takeItem(from.row, from.column));
    }

    /// A move as other versions do it: a copy is put down first.
    void moveTargetFirst(GridPosition from, GridPosition to)
    {
        table.setItem(to.row, to.column, table.item(from.row, from.column)->clone());
        delete table.takeItem(from.row, from.column);
    }

    QTableWidget table{4, 4};
    LayoutGrid grid{table};

private:
    static QString cellPicture(const QTableWidgetItem *item)
    {
        if (item == nullptr)
            return QStringLiteral(".");
        QString text = item->text();
        if (!text.startsWith(QStringLiteral("Channel ")))
            return QStringLiteral("?");
        text.remove(0, 8);
        return text.replace(QStringLiteral("\nINACTIVE"), QStringLiteral("-"));
    }
};
