#include "app/screen_fit.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QLabel>
#include <QPixmap>
#include <QRegularExpression>
#include <QWidget>
#include <algorithm>

namespace {
int shrunk(int length, double factor)
{
    return length <= 0 ? length : std::max(1, qRound(length * factor));
}

QSize shrunk(QSize size, double factor)
{
    return {shrunk(size.width(), factor), shrunk(size.height(), factor)};
}

/// `sheet` with its lengths shrunk: "border: 2.5px" becomes "border: 2px".
QString shrunk(const QString &sheet, double factor)
{
    static const QRegularExpression length(QStringLiteral(R"(\b(\d+(?:\.\d+)?)(px|pt)\b)"));
    QString result;
    qsizetype end = 0;
    for (auto found = length.globalMatch(sheet); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const int whole = qRound(match.captured(1).toDouble());
        result += sheet.mid(end, match.capturedStart() - end) +
                  QString::number(shrunk(whole, factor)) + match.captured(2);
        end = match.capturedEnd();
    }
    return result + sheet.mid(end);
}

void shrink(QLayout &layout, double factor)
{
    const QMargins margins = layout.contentsMargins();
    layout.setContentsMargins(shrunk(margins.left(), factor), shrunk(margins.top(), factor),
                              shrunk(margins.right(), factor), shrunk(margins.bottom(), factor));
    if (auto *grid = qobject_cast<QGridLayout *>(&layout)) {
        grid->setHorizontalSpacing(shrunk(grid->horizontalSpacing(), factor));
        grid->setVerticalSpacing(shrunk(grid->verticalSpacing(), factor));
    } else {
        layout.setSpacing(shrunk(layout.spacing(), factor));
    }
    for (int i = 0; i < layout.count(); ++i) {
        if (QSpacerItem *spacer = layout.itemAt(i)->spacerItem()) {
            const QSize size = shrunk(spacer->sizeHint(), factor);
            const QSizePolicy policy = spacer->sizePolicy();
            spacer->changeSize(size.width(), size.height(), policy.horizontalPolicy(),
                               policy.verticalPolicy());
        }
    }
}

int shrunkMost(int length, double factor)
{
    return length == QWIDGETSIZE_MAX ? length : shrunk(length, factor);
}

/// The indicator: its sheet comes later, and draws it as a circle of this size.
bool isTooSmall(const QWidget &widget)
{
    return widget.maximumWidth() <= 20 && widget.maximumHeight() <= 20;
}

void shrink(QWidget &widget, double factor)
{
    if (isTooSmall(widget))
        return;
    widget.setMinimumSize(shrunk(widget.minimumSize(), factor));
    widget.setMaximumSize(shrunkMost(widget.maximumWidth(), factor),
                          shrunkMost(widget.maximumHeight(), factor));
    if (!widget.styleSheet().isEmpty())
        widget.setStyleSheet(shrunk(widget.styleSheet(), factor));
    if (auto *button = qobject_cast<QAbstractButton *>(&widget))
        button->setIconSize(shrunk(button->iconSize(), factor));
    auto *label = qobject_cast<QLabel *>(&widget);
    if (label == nullptr || label->pixmap(Qt::ReturnByValue).isNull())
        return;
    const QPixmap picture = label->pixmap(Qt::ReturnByValue);
    label->setPixmap(
        picture.scaled(picture.size() * factor, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}
} // namespace

void shrinkForm(QWidget &window, double factor)
{
    if (factor >= 1)
        return;
    QFont font = window.font();
    font.setPointSizeF(font.pointSizeF() * factor);
    window.setFont(font);
    shrink(window, factor);
    const QList<QWidget *> widgets = window.findChildren<QWidget *>();
    for (QWidget *widget : widgets)
        shrink(*widget, factor);
    const QList<QLayout *> layouts = window.findChildren<QLayout *>();
    for (QLayout *layout : layouts)
        shrink(*layout, factor);
}
