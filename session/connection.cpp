#include "session/connection.h"

#include <utility>

Connection::Connection() : Connection(nullptr) {}

Connection::Connection(std::unique_ptr<SwitchLink> link)
    : link_(std::move(link)), delayed_(std::make_unique<QObject>())
{
    answerWatch_.setSingleShot(true);
    connect(&answerWatch_, &QTimer::timeout, this, &Connection::unanswered);
    if (link_) {
        connect(link_.get(), &SwitchLink::received, this,
                [this](const QByteArray &bytes) { received_.arrived.append(bytes); });
    }
}

Connection::~Connection() = default;

std::optional<SwitchLink::Road> Connection::road() const
{
    return link_ ? std::optional(link_->road()) : std::nullopt;
}

bool Connection::isOpen() const
{
    return link_ && link_->isOpen();
}

void Connection::markConnected(bool yes)
{
    connected = yes;
    if (yes)
        answerWatch_.stop();
}

QByteArray Connection::takeArrived()
{
    return std::exchange(received_.arrived, {}).join();
}

std::optional<QByteArray> Connection::takeNextArrived()
{
    return received_.arrived.isEmpty() ? std::nullopt
                                       : std::optional(received_.arrived.takeFirst());
}

QTimer *Connection::later(std::chrono::milliseconds delay, QObject &receiver, const char *slot)
{
    if (hasEnded())
        return nullptr;
    auto *timer = new QTimer(delayed_.get());
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer); // never early: the switch needs the time
    connect(timer, &QTimer::timeout, &receiver, [timer, slot, target = &receiver] {
        timer->deleteLater();
        QMetaObject::invokeMethod(target, slot);
    });
    timer->start(delay);
    return timer;
}

void Connection::watchForAnswer(std::chrono::milliseconds wait)
{
    if (isOpen() && !hasEnded())
        answerWatch_.start(wait);
}

void Connection::close()
{
    if (link_)
        link_->close();
}

void Connection::end()
{
    if (hasEnded())
        return;
    delayed_.reset();
    answerWatch_.stop();
    close();
}
