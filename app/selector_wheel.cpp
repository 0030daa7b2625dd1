#include "app/selector_wheel.h"

#include <QComboBox>
#include <QEvent>

namespace {
class UnfocusedWheel : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *selector = qobject_cast<QComboBox *>(watched);
        if (selector == nullptr || event->type() != QEvent::Wheel || selector->hasFocus())
            return QObject::eventFilter(watched, event);
        event->ignore();
        return true;
    }
};
} // namespace

void takeWheelOnlyWithFocus(QWidget &window)
{
    auto *filter = new UnfocusedWheel(&window);
    const QList<QComboBox *> selectors = window.findChildren<QComboBox *>();
    for (QComboBox *selector : selectors) {
        selector->setFocusPolicy(Qt::StrongFocus);
        selector->installEventFilter(filter);
    }
}
