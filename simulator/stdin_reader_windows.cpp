#include "simulator/stdin_reader.h"

#include <array>
#include <io.h>
#include <thread>
#include <utility>

namespace {
constexpr int standardInput = 0;
}

StdinLines::Reader::Reader(Take take, End end)
{
    link_->context = &context_;
    // A console cannot be waited for without reading, and what reads cannot be interrupted.
    std::thread(readAll, link_, std::move(take), std::move(end)).detach();
}

StdinLines::Reader::~Reader()
{
    const std::lock_guard lock(link_->mutex);
    link_->context = nullptr;
}

bool StdinLines::Reader::isInteractive()
{
    return _isatty(standardInput) != 0;
}

void StdinLines::Reader::readAll(const std::shared_ptr<Link> &link, const Take &take,
                                 const End &end)
{
    const auto tell = [&link](const std::function<void()> &what) {
        const std::lock_guard lock(link->mutex);
        if (link->context != nullptr)
            QMetaObject::invokeMethod(link->context, what, Qt::QueuedConnection);
        return link->context != nullptr;
    };
    std::array<char, 1024> buffer{};
    for (;;) {
        const int count = _read(standardInput, buffer.data(), static_cast<unsigned>(buffer.size()));
        if (count <= 0) {
            tell(end);
            return;
        }
        const QByteArray bytes(buffer.data(), count);
        if (!tell([take, bytes] { take(bytes); }))
            return;
    }
}
