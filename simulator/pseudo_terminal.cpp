#include "simulator/pseudo_terminal.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>

namespace {

[[noreturn]] void fail(const char *what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

void makeRaw(int device)
{
    termios settings{};
    if (::tcgetattr(device, &settings) != 0)
        fail("reading the pseudo-terminal's settings");
    ::cfmakeraw(&settings);
    if (::tcsetattr(device, TCSANOW, &settings) != 0)
        fail("making the pseudo-terminal raw");
}

} // namespace

PseudoTerminal::PseudoTerminal(QObject *parent) : QObject(parent) {}

PseudoTerminal::~PseudoTerminal()
{
    close();
}

void PseudoTerminal::open()
{
    close();
    try {
        controller_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (controller_ < 0 || ::grantpt(controller_) != 0 || ::unlockpt(controller_) != 0)
            fail("making a pseudo-terminal");
        const char *const name = ::ptsname(controller_);
        if (name == nullptr)
            fail("naming the pseudo-terminal");
        path_ = QString::fromLocal8Bit(name);
        device_ = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (device_ < 0)
            fail("opening the pseudo-terminal");
        makeRaw(device_);
        if (::fcntl(controller_, F_SETFL, O_NONBLOCK) != 0)
            fail("making the pseudo-terminal non-blocking");
    } catch (...) {
        close();
        throw;
    }
    readNotifier_ = std::make_unique<QSocketNotifier>(controller_, QSocketNotifier::Read);
    connect(readNotifier_.get(), &QSocketNotifier::activated, this, &PseudoTerminal::readAll);
    writeNotifier_ = std::make_unique<QSocketNotifier>(controller_, QSocketNotifier::Write);
    writeNotifier_->setEnabled(false);
    connect(writeNotifier_.get(), &QSocketNotifier::activated, this, &PseudoTerminal::writePending);
}

void PseudoTerminal::close()
{
    readNotifier_.reset();
    writeNotifier_.reset();
    if (device_ >= 0)
        ::close(device_);
    if (controller_ >= 0)
        ::close(controller_);
    device_ = -1;
    controller_ = -1;
    path_.clear();
    pending_.clear();
    sent_ = 0;
}

bool PseudoTerminal::write(const QByteArray &bytes)
{
    if (!isOpen() || backlog() + bytes.size() > longestBacklog)
        return false;
    pending_ += bytes;
    writePending();
    return true;
}

void PseudoTerminal::readAll()
{
    std::array<char, 4096> buffer{};
    QByteArray bytes;
    // At most 64 kB a turn, so that a program that never stops talking starves nobody.
    for (int turn = 0; turn < 16; ++turn) {
        const ssize_t count = ::read(controller_, buffer.data(), buffer.size());
        if (count <= 0)
            break;
        bytes.append(buffer.data(), count);
    }
    if (!bytes.isEmpty())
        Q_EMIT received(bytes);
}

void PseudoTerminal::writePending()
{
    while (sent_ < pending_.size()) {
        const ssize_t count = ::write(controller_, pending_.constData() + sent_,
                                      static_cast<std::size_t>(pending_.size() - sent_));
        if (count <= 0)
            break;
        sent_ += count;
    }
    if (sent_ == pending_.size()) {
        pending_.clear();
        sent_ = 0;
    }
    writeNotifier_->setEnabled(!pending_.isEmpty());
}
