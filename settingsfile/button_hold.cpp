#include "settingsfile/button_hold.h"

#include <QEvent>
#include <QWidget>
#include <utility>

ButtonHold::ButtonHold(const QList<QWidget *> &controls) : controls_(controls)
{
    for (QWidget *control : std::as_const(controls_)) {
        if (control->isEnabled())
            wantedEnabled_.insert(control);
        control->setEnabled(false);
        control->installEventFilter(this);
    }
}

void ButtonHold::letGo(bool enable)
{
    for (QWidget *control : std::as_const(controls_)) {
        control->removeEventFilter(this);
        if (enable && wantedEnabled_.contains(control))
            control->setEnabled(true);
    }
    controls_.clear();
}

bool ButtonHold::eventFilter(QObject *watched, QEvent *event)
{
    auto *control = qobject_cast<QWidget *>(watched);
    if (event->type() == QEvent::EnabledChange && control != nullptr && control->isEnabled()) {
        wantedEnabled_.insert(control);
        control->setEnabled(false);
    }
    return QObject::eventFilter(watched, event);
}
