#pragma once

#include <QList>
#include <QObject>
#include <QSet>

class QWidget;

/// Keeps some controls disabled for a while, whoever enables them meanwhile, and gives them back as
/// they would stand without it.
class ButtonHold : public QObject
{
    Q_OBJECT

public:
    /// Disables `controls`, which stay their owner's.
    explicit ButtonHold(const QList<QWidget *> &controls);

    /// Lets go: enables those that were enabled before or should have become so since, or none of
    /// them when `enable` is false.
    void letGo(bool enable);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QList<QWidget *> controls_;
    QSet<QObject *> wantedEnabled_;
};
