#include "live_objects.h"

#include <QAbstractEventDispatcher>
#include <QMutex>
#include <QMutexLocker>
#include <QSet>
#include <QThread>

// Qt's own table of functions that it calls with every object: at 3 when one is made, at 4 when one
// goes. Exported for tools that look into running programs.
extern Q_CORE_EXPORT quintptr qtHookData[];

namespace {
constexpr int madeHook = 3;
constexpr int goneHook = 4;

// Both outlive every object of the program.
QMutex &guard()
{
    static auto *const mutex = new QMutex;
    return *mutex;
}

QSet<QObject *> &all()
{
    static auto *const objects = new QSet<QObject *>;
    return *objects;
}

void made(QObject *object)
{
    const QMutexLocker lock(&guard());
    all().insert(object);
}

void gone(QObject *object)
{
    const QMutexLocker lock(&guard());
    all().remove(object);
}
} // namespace

void live_objects::begin()
{
    (void)guard();
    (void)all();
    qtHookData[madeHook] = reinterpret_cast<quintptr>(&made);
    qtHookData[goneHook] = reinterpret_cast<quintptr>(&gone);
}

int live_objects::objects()
{
    const QMutexLocker lock(&guard());
    return static_cast<int>(all().size());
}

int live_objects::timers()
{
    const QMutexLocker lock(&guard());
    int count = 0;
    for (QObject *object : std::as_const(all())) {
        auto *dispatcher = QAbstractEventDispatcher::instance(QThread::currentThread());
        count += static_cast<int>(dispatcher->registeredTimers(object).size());
    }
    return count;
}
